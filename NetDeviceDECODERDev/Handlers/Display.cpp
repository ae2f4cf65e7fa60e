// How windows are shown: borders, zoom, and the switches for the whole wall, which the host gets as a
// separate XML text.

#include "AtomicAccess.h"
#include "DecodeCommDisplay.h"
#include "Handlers/WindowListXml.h"
#include "Link/CmdXmlFormat.h"
#include "Link/DeviceReply.h"
#include "MonitorTvwCommDisplay.h"
#include "NetNode.h"
#include "Session/Envelope.h"
#include "Session/NetProtocolProcTWDECODERDevImp.h"
#include "SysHelper.h"

using namespace DECODE_XML_CMD_HEADER;
using namespace ORVA2_CLIENT_TVW;
using namespace ORVA2_DECODER_TVW;

// A short record sends what was read of it.
void CNetProtocolProcTWDECODERDevImp::DrawBorder(CCmdProcObject* cmd, char* data, unsigned int len)
{
    S_Decoder_Draw_Border record;
    record.SetData(data, len);

    CDeviceRequest request(*this, HTTP_CMDX_DRAW_BORDER);
    CMarkupSTL& body = request.Body();
    AddWindowList(body, record._windlist, &S_Decoder_Draw_Border_Wind::_subwindlist,
                  [&body](const auto& subWindow) {
                      body.AddElem("index", subWindow._index);
                      body.AddElem("drawborder", subWindow._drawborder);
                  });
    if (Exchange(cmd, request)) {
        ReplyResult(cmd, data, len, TVWALL_DECODE_DRAWBODER);
    }
}

void CNetProtocolProcTWDECODERDevImp::PlanWndZoom(CCmdProcObject* cmd, char* data, unsigned int len)
{
    S_MTvw_PlanWnd_Zoom_v2 record{};
    if (!ReadImage(data, len, record)) {
        DevToKSETFailReturn(cmd, ORVA_NET_PROTOCOL::KEST_RESULT_DEVICE_ERROR);
        return;
    }
    CDeviceRequest request(*this, HTTP_CMDX_DO_FULL_SCREEN);
    request.Body().AddElem("enable", record._bZoom);
    {
        CElemScope window(request.Body(), "td_window");
        request.Body().AddElem("id", record._nWndID);
        CElemScope subWindow(request.Body(), "td_subwindow");
        request.Body().AddElem("index", record._nIndex);
    }
    if (Exchange(cmd, request)) {
        ReplyResult(cmd, data, len, TVWALL_DECODE_ZOOMOUT);
    }
}

// The host gets the switches as it requested them, not as they now are.
void CNetProtocolProcTWDECODERDevImp::SetWindowConfig(CCmdProcObject* cmd, char* data, unsigned int len)
{
    S_MTvw_Wall_Set_WindCfg_V2 record{};
    if (!ReadImage(data, len, record)) {
        DevToKSETFailReturn(cmd, ORVA_NET_PROTOCOL::KEST_RESULT_DEVICE_ERROR);
        return;
    }
    CDeviceRequest request(*this, HTTP_CMDX_SET_WINDOW_CONFIG);
    request.Body().AddElem("enableborder", record._enableborder);
    request.Body().AddElem("enableshowwinid", record._enableshowwinid);
    if (Exchange(cmd, request)) {
        ReplyWindowConfig(cmd, record._enableborder, record._enableshowwinid, "setWindowConfig",
                          TVWALL_DECODE_SET_WINDOW_CONFIG);
    }
}

void CNetProtocolProcTWDECODERDevImp::GetWindowConfig(CCmdProcObject* cmd, char* /*data*/,
                                                      unsigned int /*len*/)
{
    const CDeviceRequest request(*this, HTTP_CMDX_GET_WINDOW_CONFIG);
    if (Exchange(cmd, request)) {
        const CVTXMLParse& xml = Reply().Xml();
        ReplyWindowConfig(cmd, xml.GetValueDWORD("td_command/td_body/enableborder"),
                          xml.GetValueDWORD("td_command/td_body/enableshowwinid"), "getWindowConfig",
                          TVWALL_DECODE_GET_WINDOW_CONFIG);
    }
}

void CNetProtocolProcTWDECODERDevImp::ReplyWindowConfig(CCmdProcObject* cmd, unsigned int nEnableBorder,
                                                        unsigned int nEnableShowWinID,
                                                        const char* szOperation, unsigned int nAnswerType)
{
    const CNetNode* node = AtomicLoad(m_pCurNetNode);
    const GUID nodeID = node != nullptr ? node->GetNodeID() : GUID{};
    CMarkupSTL doc;
    {
        CElemScope response(doc, "response");
        doc.AddElem("id", CSysHelper::GuidToString(nodeID).c_str());
        CElemScope baseInfo(doc, "baseInfo");
        doc.AddElem("errorcode", Reply().ErrorCode());
        doc.AddElem("enableborder", nEnableBorder);
        doc.AddElem("enableshowwinid", nEnableShowWinID);
        doc.AddElem(szOperation, 1);
    }
    std::string text = doc.GetDoc();
    text.push_back('\0'); // the host reads it as a zero-terminated text
    ReplyResult(cmd, text.data(), static_cast<unsigned int>(text.size()), nAnswerType);
}
