// Sound of sub-windows: switch on, switch off, query. A record that is short or malformed still sends what
// was read of it.

#include "Handlers/WindowListXml.h"
#include "Link/CmdXmlFormat.h"
#include "Link/DeviceReply.h"
#include "MonitorTvwCommAudio.h"
#include "Session/Envelope.h"
#include "Session/NetProtocolProcTWDECODERDevImp.h"
#include "TvwallProtocol.h"

using namespace DECODE_XML_CMD_HEADER;
using namespace ORVA2_CLIENT_TVW;
using namespace ORVA2_DECODER_TVW;

namespace {

std::shared_ptr<S_MTvw_Get_AuCfg_Cav> ReadWindow(const CVTXMLParse& xml, CVTXMLParse::Item item,
                                                 uint64_t& nSpare)
{
    auto window = std::make_shared<S_MTvw_Get_AuCfg_Cav>();
    window->_id = xml.GetValue_i32(item, "id");
    for (auto subItem = xml.GetFirstItem(item, "td_subwindowlist/item"); subItem != nullptr;
         subItem = xml.GetNextSiblingItem(subItem, "item")) {
        auto subWindow = std::make_shared<S_MTvw_Get_AuCfg_Subwnd>();
        subWindow->_index = xml.GetValue_i32(subItem, "index");
        // The decoder's name for what it accepts as td_channel.
        subWindow->_channelId = xml.GetValue_i32(subItem, "channelid");
        AppendReplied(window->_subList, std::move(subWindow), nSpare);
        ++window->_subCnt;
    }
    return window;
}

void ReadAudioConfig(const CVTXMLParse& xml, S_MTvw_Get_Audio_Config& answer)
{
    uint64_t nSpare = xml.Spare();
    for (auto item = xml.GetFirstItem("td_command/td_body/td_windowlist/item"); item != nullptr;
         item = xml.GetNextSiblingItem(item, "item")) {
        AppendReplied(answer._cavList, ReadWindow(xml, item, nSpare), nSpare);
        ++answer._cavCnt;
    }
}

} // namespace

void CNetProtocolProcTWDECODERDevImp::PlayAudio(CCmdProcObject* cmd, char* data, unsigned int len)
{
    S_MTvw_Get_Audio_Config record;
    record.SetData(data, len);

    CDeviceRequest request(*this, HTTP_CMDX_PLAY_AUDIO);
    CMarkupSTL& body = request.Body();
    AddWindowList(body, record._cavList, &S_MTvw_Get_AuCfg_Cav::_subList, [&body](const auto& subWindow) {
        body.AddElem("index", subWindow._index);
        body.AddElem("td_channel", subWindow._channelId);
    });
    if (Exchange(cmd, request)) {
        ReplyResult(cmd, data, len, TVWALL_DECODE_PLAY_AUDIO);
    }
}

void CNetProtocolProcTWDECODERDevImp::StopAudio(CCmdProcObject* cmd, char* data, unsigned int len)
{
    S_MTvw_Get_Audio_Config record;
    record.SetData(data, len);

    CDeviceRequest request(*this, HTTP_CMDX_STOP_AUDIO);
    CMarkupSTL& body = request.Body();
    AddWindowList(body, record._cavList, &S_MTvw_Get_AuCfg_Cav::_subList,
                  [&body](const auto& subWindow) { body.AddElem("index", subWindow._index); });
    if (Exchange(cmd, request)) {
        ReplyResult(cmd, data, len, TVWALL_DECODE_STOP_AUDIO);
    }
}

void CNetProtocolProcTWDECODERDevImp::GetAudioConfig(CCmdProcObject* cmd, char* data, unsigned int len)
{
    S_MTvw_Get_Audio_Config record;
    record.SetData(data, len);

    CDeviceRequest request(*this, HTTP_CMDX_GET_AUDIO_CFG);
    request.Body();
    if (!Exchange(cmd, request)) {
        return;
    }
    S_MTvw_Get_Audio_Config answer;
    answer._nwallGuid = record._nwallGuid;
    answer._DecGuid = record._DecGuid;
    ReadAudioConfig(Reply().Xml(), answer);
    std::string bytes = answer.Encode();
    ReplyResult(cmd, bytes.data(), static_cast<unsigned int>(bytes.size()), TVWALL_DECODE_GET_AUDIO_CONFIG);
}
