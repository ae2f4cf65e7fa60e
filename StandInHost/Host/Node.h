#pragma once

#include <atomic>
#include <memory>

#include "NetNode.h"

namespace standin_host {

class CConnection;
class CHostEvents;

// The host's node for one decoder: its identifier and its connection.
class CDecoderNode final : public CNetNode {
public:
    CDecoderNode(const GUID& nodeID, std::shared_ptr<CConnection> pConnection, CHostEvents& events);
    CDecoderNode(const CDecoderNode&) = delete;
    CDecoderNode& operator=(const CDecoderNode&) = delete;

    void DeliverCommand(unsigned int nCmdID, CCmdProcParam* pParam) override;
    bool SendData(const void* pData, unsigned long nLen) override;
    // True once the connection has been ended from this side.
    bool IsDropRecvData() override { return m_bDisconnected; }
    void Disconnect() override;
    GUID GetNodeID() const override { return m_nodeID; }

private:
    const GUID m_nodeID;
    const std::shared_ptr<CConnection> m_pConnection;
    CHostEvents& m_events;
    std::atomic<bool> m_bDisconnected{false};
};

} // namespace standin_host
