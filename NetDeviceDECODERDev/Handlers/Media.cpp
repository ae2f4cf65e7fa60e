// Starting and stopping media in windows. A record that is short or malformed still sends what was read of
// it.

#include "Handlers/MediaXml.h"
#include "Handlers/WindowListXml.h"
#include "Link/CmdXmlFormat.h"
#include "MonitorTvwCommMedia.h"
#include "Session/Envelope.h"
#include "Session/NetProtocolProcTWDECODERDevImp.h"
#include "TvwallProtocol.h"

using namespace DECODE_XML_CMD_HEADER;
using namespace ORVA2_CLIENT_TVW;
using namespace ORVA2_DECODER_TVW;

void CNetProtocolProcTWDECODERDevImp::PlayMedia(CCmdProcObject* cmd, char* data, unsigned int len)
{
    S_MTvw_Wall_Media record;
    record.SetData(data, len);

    CDeviceRequest request(*this);
    AddPlayMediaXmlStr(request.Doc(), &record, request.Seq());
    if (Exchange(cmd, request)) {
        ReplyResult(cmd, data, len, TVWALL_DECODE_DO_PLAY_MEDIA);
    }
}

void CNetProtocolProcTWDECODERDevImp::AddPlayMediaXmlStr(CMarkupSTL& xml, S_MTvw_Wall_Media* record,
                                                         unsigned int seq) const
{
    AddRequestXmfHeader(xml);
    AddCommomXmlStr(xml, HTTP_CMDX_PLAY_MEDIA, seq);
    xml.OutOfElem();
    const CElemScope body(xml, "td_body");
    const CCredentialCipher cipher = Cipher(m_replyMessage.s_pubkey2);
    AddWindowList(xml, record->_mediaWind, &S_MTvw_Wall_Media_Wind::_subWind,
                  [&xml, &cipher](const auto& subWindow) {
                      xml.AddElem("index", subWindow._index);
                      // One element for all streams of the sub-window, group after group, as the decoder
                      // expects.
                      const CElemScope mediaInfo(xml, "mediainfo");
                      for (const auto& media : subWindow._mediaInfo) {
                          AddMediaXml(xml, *media, cipher);
                      }
                  });
}

// Also stops polling; either way the answer carries this command's option type, as the host expects.
void CNetProtocolProcTWDECODERDevImp::StopPlayMedia(CCmdProcObject* cmd, char* data, unsigned int len)
{
    S_MTvw_Wall_Media record;
    record.SetData(data, len);

    CDeviceRequest request(*this, HTTP_CMDX_STOP_PLAY_MEDIA);
    CMarkupSTL& body = request.Body();
    AddWindowList(body, record._mediaWind, &S_MTvw_Wall_Media_Wind::_subWind,
                  [&body](const auto& subWindow) { body.AddElem("index", subWindow._index); });
    if (Exchange(cmd, request)) {
        ReplyResult(cmd, data, len, TVWALL_DECODE_DO_STOP_PLAY_MEDIA);
    }
}
