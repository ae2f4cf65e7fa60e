#pragma once
// The host's node: one decoder and its connection.

#include "CmdProcParam.h"
#include "HostTypes.h"

// Owned by the host; outlives the protocol processor that serves it. The order of the virtual operations is
// part of the ABI. The receive thread and the worker thread may call every operation concurrently; none
// throws.
class CNetNode {
public:
    // Delivers a host command from the plug-in: a notification, under KEST_CMD_TVWALL_DECODE_UPDATE, with
    // pParam a CCmdProcParamMTvwall. The node takes what it needs from the parameter during the call.
    virtual void DeliverCommand(unsigned int nCmdID, CCmdProcParam* pParam) = 0;
    // Sends one frame: all nLen bytes or none, and does not block for long. False on failure; GetLastError()
    // gives the reason. The host's own heartbeats go between frames, never into one.
    virtual bool SendData(const void* pData, unsigned long nLen) = 0;
    // True when received data is to be dropped instead of parsed; asked before every receive, so cheap. The
    // observer then returns 0, and the host discards the bytes.
    virtual bool IsDropRecvData() = 0;
    // Ends the connection, as if the decoder had done so. Called inside OnSocketRecvData, when there is no
    // memory to keep the bytes of the stream: handle and socket stay until the processor's Stop and Quit.
    virtual void Disconnect() = 0;
    // The node's identifier; part of the answer to the login.
    virtual GUID GetNodeID() const = 0;

protected:
    ~CNetNode() = default;
};
