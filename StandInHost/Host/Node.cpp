#include "Host/Node.h"

#include <string>
#include <utility>

#include "Host/Connection.h"
#include "Host/HostEvents.h"
#include "Host/HostLog.h"

namespace standin_host {

CDecoderNode::CDecoderNode(const GUID& nodeID, std::shared_ptr<CConnection> pConnection, CHostEvents& events)
    : m_nodeID(nodeID), m_pConnection(std::move(pConnection)), m_events(events)
{
}

void CDecoderNode::DeliverCommand(unsigned int nCmdID, CCmdProcParam* pParam)
{
    // Plug-in and host are loaded apart, so the parameter's kind is known by the command and not by a cast
    // that checks.
    if (nCmdID != ORVA_NET_PROTOCOL::KEST_CMD_TVWALL_DECODE_UPDATE || pParam == nullptr) {
        Log(ELogLevel::Abnormal, "the plug-in delivered an unknown command " + std::to_string(nCmdID));
        return;
    }
    const auto& notification = static_cast<const CCmdProcParamMTvwall&>(*pParam);
    std::string strData;
    if (notification.GetData() != nullptr) {
        strData.assign(notification.GetData(), notification.GetDataLen());
    }
    m_events.Deliver({nCmdID, notification.m_DataTvwallInfo, notification.m_destNodeID, std::move(strData)});
}

bool CDecoderNode::SendData(const void* pData, unsigned long nLen)
{
    return m_pConnection->Send({static_cast<const char*>(pData), nLen});
}

void CDecoderNode::Disconnect()
{
    m_bDisconnected = true;
    m_pConnection->Fail("the plug-in ended the connection");
}

} // namespace standin_host
