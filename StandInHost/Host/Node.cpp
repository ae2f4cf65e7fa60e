#include "Host/Node.h"

#include <string>
#include <utility>

#include "Host/Connection.h"
#include "Host/HostEvents.h"
#include "Host/HostLog.h"

namespace standin_host {

DecoderNode::DecoderNode(const GUID& nodeID, std::shared_ptr<Connection> connection, HostEvents& events)
    : m_nodeID(nodeID), m_connection(std::move(connection)), m_events(events)
{
}

void DecoderNode::DeliverCommand(unsigned int cmdID, CCmdProcParam* param)
{
    // Plug-in and host are separate binaries, so the command tells the parameter's type, not a dynamic_cast.
    if (cmdID != ORVA_NET_PROTOCOL::KEST_CMD_TVWALL_DECODE_UPDATE || param == nullptr) {
        Log(LogLevel::Abnormal, "the plug-in delivered an unknown command " + std::to_string(cmdID));
        return;
    }
    const auto& notification = static_cast<const CCmdProcParamMTvwall&>(*param);
    std::string data;
    if (notification.GetData() != nullptr) {
        data.assign(notification.GetData(), notification.GetDataLen());
    }
    m_events.Deliver({cmdID, notification.m_DataTvwallInfo, notification.m_destNodeID, std::move(data)});
}

bool DecoderNode::SendData(const void* data, unsigned long len)
{
    return m_connection->Send({static_cast<const char*>(data), len});
}

void DecoderNode::Disconnect()
{
    m_disconnected = true;
    m_connection->Fail("the plug-in ended the connection");
}

} // namespace standin_host
