// Canvas windows: create, delete, move and resize, raise, re-split, clear. A record that is short or
// malformed still sends what was read of it.

#include "Handlers/WindowListXml.h"
#include "Link/CmdXmlFormat.h"
#include "MonitorTvwCommCanvas.h"
#include "Session/Envelope.h"
#include "Session/NetProtocolProcTWDECODERDevImp.h"

using namespace DECODE_XML_CMD_HEADER;
using namespace ORVA2_CLIENT_TVW;
using namespace ORVA2_DECODER_TVW;

// Both requests that carry whole windows. The split is also answered under the creation's option type, as the
// host expects.
void CNetProtocolProcTWDECODERDevImp::SendCanvasWindows(CCmdProcObject* cmd, char* data, unsigned int len,
                                                        const std::string& url)
{
    S_MTvw_Create_CavansWindow record;
    record.SetData(data, len);

    CDeviceRequest request(*this, url);
    CMarkupSTL& body = request.Body();
    const auto addWindow = [&body](const S_Create_Cavans_WindowInfo& window) {
        body.AddElem("id", window._nID);
        AddRect(body, window._nXPos, window._nYpos, window._nWidth, window._nHeight);
        body.AddElem("mode", window._nMode);
    };
    const auto addSubWindow = [&body](const S_Cavans_Sub_WindowInfo& subWindow) {
        body.AddElem("index", subWindow._nIndex);
        body.AddElem("osdid", subWindow._nOsdid);
    };
    AddWindowList(body, record._listCanvas, &S_Create_Cavans_WindowInfo::_listSubWindow, addWindow,
                  addSubWindow);
    if (Exchange(cmd, request)) {
        ReplyResult(cmd, data, len, TVWALL_DECODE_CREATE_CANVAS);
    }
}

void CNetProtocolProcTWDECODERDevImp::CreateCanvas(CCmdProcObject* cmd, char* data, unsigned int len)
{
    SendCanvasWindows(cmd, data, len, HTTP_CMDX_CREATE_CANVAS);
}

void CNetProtocolProcTWDECODERDevImp::doSetCanvasSplit(CCmdProcObject* cmd, char* data, unsigned int len)
{
    SendCanvasWindows(cmd, data, len, HTTP_CMD_SPLIT_CANVAS);
}

void CNetProtocolProcTWDECODERDevImp::DelCanvas(CCmdProcObject* cmd, char* data, unsigned int len)
{
    S_MTvw_Del_CavansWindow record;
    record.SetData(data, len);

    CDeviceRequest request(*this, HTTP_CMDX_DEL_CANVAS);
    {
        CElemScope list(request.Body(), "td_windowlist");
        for (const auto& window : record._listDelCanvas) {
            CElemScope item(request.Body(), "item");
            request.Body().AddElem("id", window->_nID);
        }
    }
    if (Exchange(cmd, request)) {
        ReplyResult(cmd, data, len, TVWALL_DECODE_DEL_CANVAS);
    }
}

void CNetProtocolProcTWDECODERDevImp::ChangeCanvas(CCmdProcObject* cmd, char* data, unsigned int len)
{
    S_MTvw_Modyfy_CavansWindow record;
    record.SetData(data, len);

    CDeviceRequest request(*this, HTTP_CMDX_MODIFY_CANVAS);
    {
        CElemScope list(request.Body(), "td_windowlist");
        for (const auto& window : record._listModfyCanvas) {
            CElemScope item(request.Body(), "item");
            request.Body().AddElem("id", window->_nID);
            AddRect(request.Body(), window->_nPositionX, window->_nPositionY, window->_nWidth,
                    window->_nHeight);
        }
    }
    if (Exchange(cmd, request)) {
        ReplyResult(cmd, data, len, TVWALL_DECODE_MODIFY_CANVAS);
    }
}

void CNetProtocolProcTWDECODERDevImp::TopCanvas(CCmdProcObject* cmd, char* data, unsigned int len)
{
    S_MTvw_Top_Canvas_Item record{}; // a short record raises window 0
    ReadImage(data, len, record);

    CDeviceRequest request(*this, HTTP_CMDX_TOP_CANVAS);
    {
        CElemScope window(request.Body(), "td_window");
        request.Body().AddElem("id", record._id);
    }
    if (Exchange(cmd, request)) {
        ReplyResult(cmd, data, len, TVWALL_DECODE_TOP_CANVAS);
    }
}

void CNetProtocolProcTWDECODERDevImp::doClearWall(CCmdProcObject* cmd, char* data, unsigned int len)
{
    CDeviceRequest request(*this, HTTP_CMDX_CLEAR_WALL_INFO);
    request.Body();
    if (Exchange(cmd, request)) {
        ReplyResult(cmd, data, len, TVWALL_DECODE_CLEAR_WALL);
    }
}
