#pragma once

#include <atomic>
#include <memory>

#include "NetNode.h"

namespace standin_host {

class Connection;
class HostEvents;

// The host's node for one decoder: its identifier and its connection.
class DecoderNode final : public CNetNode {
public:
    DecoderNode(const GUID& nodeID, std::shared_ptr<Connection> connection, HostEvents& events);
    DecoderNode(const DecoderNode&) = delete;
    DecoderNode& operator=(const DecoderNode&) = delete;

    void DeliverCommand(unsigned int cmdID, CCmdProcParam* param) override;
    bool SendData(const void* data, unsigned long len) override;
    // True once the connection has been ended from this side.
    bool IsDropRecvData() override { return m_disconnected; }
    void Disconnect() override;
    GUID GetNodeID() const override { return m_nodeID; }

private:
    const GUID m_nodeID;
    const std::shared_ptr<Connection> m_connection;
    HostEvents& m_events;
    std::atomic<bool> m_disconnected{false};
};

} // namespace standin_host
