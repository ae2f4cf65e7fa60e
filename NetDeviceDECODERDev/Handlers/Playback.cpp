// Playback control. A record that is short or malformed still sends what was read of it.

#include "DecodeCommPlayback.h"
#include "Handlers/WindowListXml.h"
#include "Link/CmdXmlFormat.h"
#include "Session/Envelope.h"
#include "Session/NetProtocolProcTWDECODERDevImp.h"
#include "TvwallProtocol.h"

using namespace DECODE_XML_CMD_HEADER;
using namespace ORVA2_DECODER_TVW;

void CNetProtocolProcTWDECODERDevImp::PlayBackCtrl(CCmdProcObject* cmd, char* data, unsigned int len)
{
    S_Playback_Ctrl_Items_V2 record;
    record.SetData(data, len);

    CDeviceRequest request(*this, HTTP_CMDX_PLAY_BACK_CTRL);
    CMarkupSTL& body = request.Body();
    AddWindowList(body, record._nCavs, &S_Playback_Ctrl_Cavs::_subWnd, [&body](const auto& subWindow) {
        body.AddElem("index", subWindow._nIndex);
        body.AddElem("pbctrltype", subWindow._nPbCtrlType);
        body.AddElem("pbctrlval", subWindow._nPbCtrlVal);
    });
    if (Exchange(cmd, request)) {
        ReplyResult(cmd, data, len, TVWALL_DECODE_PLAYBACK_CTRL);
    }
}
