// Channel groups: add, change, delete, query, and cycle through them. The decoder keeps the groups. A record
// that is short or malformed still sends what was read of it.

#include <cstring>
#include <string_view>

#include "Encoding/FieldText.h"
#include "Handlers/WindowListXml.h"
#include "Link/CmdXmlFormat.h"
#include "Link/DeviceReply.h"
#include "MonitorTvwCommChannelGroup.h"
#include "Session/Envelope.h"
#include "Session/NetProtocolProcTWDECODERDevImp.h"
#include "TvwallProtocol.h"
#include "VTXMLParse.h"

using namespace DECODE_XML_CMD_HEADER;
using namespace ORVA2_CLIENT_TVW;
using namespace ORVA2_DECODER_TVW;

namespace {

// The host expects both texts with their zeros, written name first: the part of the name that overflows its
// field lands in the list's, except where the list overwrites it. The list's field ends the record, and
// nothing goes past it.
void SetTexts(S_MTvw_Wall_Channel_Group_Info& group, std::string_view name, std::string_view channels)
{
    constexpr size_t NAME_LEN = sizeof(group._name);
    constexpr size_t LIST_LEN = sizeof(group._td_channellist);
    char texts[NAME_LEN + LIST_LEN] = {};
    name.copy(texts, sizeof(texts));
    const size_t nList = channels.copy(texts + NAME_LEN, LIST_LEN);
    if (nList < LIST_LEN) {
        texts[NAME_LEN + nList] = '\0';
    }
    memcpy(group._name, texts, NAME_LEN);
    memcpy(group._td_channellist, texts + NAME_LEN, LIST_LEN);
}

} // namespace

// Both requests that carry a whole group.
void CNetProtocolProcTWDECODERDevImp::SendChannelGroup(CCmdProcObject* cmd, char* data, unsigned int len,
                                                       const std::string& url, unsigned int nAnswerType)
{
    S_MTvw_Wall_Channel_Group_Info record;
    record.SetData(data, len);

    CDeviceRequest request(*this, url);
    {
        CElemScope group(request.Body(), "channelgroup");
        request.Body().AddElem("id", record._nid);
        request.Body().AddElem("name", FieldText(record._name).c_str());
        request.Body().AddElem("channelnum", record._channelnum);
        request.Body().AddElem("interval", record._interval);
        request.Body().AddElem("td_channellist", FieldText(record._td_channellist).c_str());
    }
    if (Exchange(cmd, request)) {
        ReplyResult(cmd, data, len, nAnswerType);
    }
}

void CNetProtocolProcTWDECODERDevImp::AddChannelGroup(CCmdProcObject* cmd, char* data, unsigned int len)
{
    SendChannelGroup(cmd, data, len, HTTP_CMDX_ADD_CHANNEL_GROUP, TVWALL_DECODE_ADD_CHANNEL_GROUP);
}

// Answered under the option type that starts polling, as the host expects.
void CNetProtocolProcTWDECODERDevImp::SetChannelGroup(CCmdProcObject* cmd, char* data, unsigned int len)
{
    SendChannelGroup(cmd, data, len, HTTP_CMDX_SET_CHANNEL_GROUP, TVWALL_DECODE_START_CHLGROUP_POLLING);
}

void CNetProtocolProcTWDECODERDevImp::DeleteChannelGroup(CCmdProcObject* cmd, char* data, unsigned int len)
{
    S_MTvw_Wall_Delete_Channel_Group record;
    record.SetData(data, len);

    CDeviceRequest request(*this, HTTP_CMDX_DELETE_CHANNEL_GROUP);
    {
        CElemScope list(request.Body(), "channelgrouplist");
        for (const auto& group : record._chgrouplist) {
            CElemScope item(request.Body(), "item");
            request.Body().AddElem("id", group->_id);
        }
    }
    if (Exchange(cmd, request)) {
        ReplyResult(cmd, data, len, TVWALL_DECODE_DELETE_CHANNEL_GROUP);
    }
}

// Two oddities required by the peers: the decoder serves this query under the URL that changes a group, and
// the host expects the answer under the option type that starts polling.
void CNetProtocolProcTWDECODERDevImp::GetChannelGroup(CCmdProcObject* cmd, char* data, unsigned int len)
{
    S_MTvw_Wall_Get_ChGroup record;
    record.SetData(data, len);

    CDeviceRequest request(*this, HTTP_CMDX_SET_CHANNEL_GROUP);
    request.Body();
    if (record._id != 0) {
        CElemScope group(request.Body(), "channelgroup");
        request.Body().AddElem("id", record._id);
    }
    if (!Exchange(cmd, request)) {
        return;
    }
    S_MTvw_Wall_Get_ChGroup_info answer;
    GetChGroupInfoXml(answer, Reply().Xml());
    answer._numchgroup = static_cast<tuint32>(answer.getChGroupList.size());
    std::string bytes = answer.Encode();
    ReplyResult(cmd, bytes.data(), static_cast<unsigned int>(bytes.size()),
                TVWALL_DECODE_START_CHLGROUP_POLLING);
}

void CNetProtocolProcTWDECODERDevImp::GetChGroupInfoXml(S_MTvw_Wall_Get_ChGroup_info& info, const char* text,
                                                        unsigned int len)
{
    GetChGroupInfoXml(info, CVTXMLParse(text, len));
}

void CNetProtocolProcTWDECODERDevImp::GetChGroupInfoXml(S_MTvw_Wall_Get_ChGroup_info& info,
                                                        const CVTXMLParse& xml)
{
    uint64_t nSpare = xml.Spare();
    for (auto item = xml.GetFirstItem("td_command/td_body/channelgrouplist/item"); item != nullptr;
         item = xml.GetNextSiblingItem(item, "item")) {
        auto group = std::make_shared<S_MTvw_Wall_Channel_Group_Info>();
        group->_nid = xml.GetValue_i32(item, "id");
        group->_interval = xml.GetValueDWORD(item, "interval");
        SetTexts(*group, xml.GetText(item, "name"), xml.GetText(item, "td_channellist"));
        AppendReplied(info.getChGroupList, std::move(group), nSpare);
    }
}

void CNetProtocolProcTWDECODERDevImp::StartChlGroupPolling(CCmdProcObject* cmd, char* data, unsigned int len)
{
    S_MTvw_Wall_Start_Chl_GrPolling record;
    record.SetData(data, len);

    CDeviceRequest request(*this, HTTP_CMDX_START_CHLGROUP_POLLING);
    CMarkupSTL& body = request.Body();
    AddWindowList(body, record._GrPollinglist, &S_MTvw_Wall_Chl_GrPolling_Winitem::_subitemList,
                  [&body](const auto& subWindow) {
                      body.AddElem("index", subWindow._index);
                      body.AddElem("channelgroup", subWindow._channelgroup);
                  });
    if (Exchange(cmd, request)) {
        ReplyResult(cmd, data, len, TVWALL_DECODE_START_CHLGROUP_POLLING);
    }
}

// To the decoder, stopping polling is stopping the media in those sub-windows; the host sends that command's
// record.
void CNetProtocolProcTWDECODERDevImp::StopChlGroupPolling(CCmdProcObject* cmd, char* data, unsigned int len)
{
    StopPlayMedia(cmd, data, len);
}
