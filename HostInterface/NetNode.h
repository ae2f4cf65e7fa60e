#pragma once
// The host's node: one decoder and its connection.

#include "CmdProcParam.h"
#include "HostTypes.h"

// Owned by the host; outlives the protocol processor that serves it. The order of the virtual operations is
// binary contract. Every operation may be called from the receive thread and from the worker thread at the
// same time.
class CNetNode {
public:
    // Delivers a host command from the plug-in (notifications, under KEST_CMD_TVWALL_DECODE_UPDATE). The node
    // takes what it needs from the parameter during the call.
    virtual void DeliverCommand(unsigned int nCmdID, CCmdProcParam* pParam) = 0;
    // Sends all nLen bytes or none; false when that failed, with the reason in GetLastError().
    virtual bool SendData(const void* pData, unsigned long nLen) = 0;
    // True when received data is to be dropped instead of parsed.
    virtual bool IsDropRecvData() = 0;
    // Closes the connection.
    virtual void Disconnect() = 0;
    // The node's identifier.
    virtual GUID GetNodeID() const = 0;

protected:
    ~CNetNode() = default;
};
