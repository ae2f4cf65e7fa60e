// A whole wall in one request. A record that is short or malformed still sends what was read of it.

#include "Handlers/MediaXml.h"
#include "Handlers/WindowListXml.h"
#include "Link/CmdXmlFormat.h"
#include "MonitorTvwCommWallInfo.h"
#include "Session/Envelope.h"
#include "Session/NetProtocolProcTWDECODERDevImp.h"
#include "TvwallProtocol.h"

using namespace DECODE_XML_CMD_HEADER;
using namespace ORVA2_CLIENT_TVW;
using namespace ORVA2_DECODER_TVW;

void CNetProtocolProcTWDECODERDevImp::SetWallInfo(CCmdProcObject* cmd, char* data, unsigned int len)
{
    S_MTvw_Wall_Set_wall_V2 record;
    record.SetData(data, len);

    CDeviceRequest request(*this, HTTP_CMDX_SET_WALL_INFO);
    CMarkupSTL& body = request.Body();
    const CCredentialCipher cipher = Cipher(m_replyMessage.s_pubkey2);
    const auto addWindow = [&body](const S_MTvw_Wall_Set_wall_Wind& window) {
        const S_MTvw_Wall_Set_wall_Rect& rect = window._rect;
        body.AddElem("id", window._id);
        AddRect(body, rect._xPos, rect._yPos, rect._width, rect._height);
        body.AddElem("layerindex", window._layerindx);
        body.AddElem("mode", window._mode);
    };
    const auto addSubWindow = [&body, &cipher](const S_MTvw_Wall_Set_wall_Subwin& subWindow) {
        body.AddElem("index", subWindow._index);
        body.AddElem("osdid", subWindow._osdid);
        if (HasMedia(subWindow._mediaInfo)) {
            const CElemScope mediaInfo(body, "mediainfo");
            AddMediaXml(body, subWindow._mediaInfo, cipher);
        }
    };
    AddWindowList(body, record._windList, &S_MTvw_Wall_Set_wall_Wind::_subwin, addWindow, addSubWindow);
    if (Exchange(cmd, request)) {
        ReplyResult(cmd, data, len, TVWALL_DECODE_SET_WALL_INFO);
    }
}
