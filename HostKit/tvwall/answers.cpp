#include "tvwall/answers.h"

#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <limits>
#include <list>
#include <memory>
#include <string_view>
#include <utility>

#include "DecodeComm.h"
#include "Encoding/FieldText.h"
#include "MonitorTvwComm.h"
#include "VTXMLParse.h"

namespace tvwall {

namespace {

using namespace ORVA2_CLIENT_TVW;
using namespace ORVA2_DECODER_TVW;
using namespace ORVA_NET_PROTOCOL;

constexpr std::size_t kHead = sizeof(S_Decoder_Default_Result);

Reason Missing(std::size_t offset, std::string field, std::uint64_t needed, std::size_t left)
{
    return {offset, std::move(field),
            std::to_string(needed) + " bytes needed, " + std::to_string(left) + " left"};
}

// --- where a record does not fit into its bytes ---

// Reads as the record's own reader does, which does not tell where it has failed.
class FaultFinder {
public:
    // Offsets count from before `skipped` bytes; the names are those of the lists, outer first.
    FaultFinder(Bytes bytes, std::size_t skipped, std::initializer_list<const char*> lists)
        : m_left(bytes), m_offset(skipped), m_lists(lists)
    {
    }

    template <class... Field>
    void Plain(Field&... fields)
    {
        if (Has((sizeof(Field) + ...), "")) {
            (Copy(fields), ...);
        }
    }

    template <class Count, class Item>
    void List(Count count, std::list<std::shared_ptr<Item>>&)
    {
        const char* name = m_depth < m_lists.size() ? m_lists[m_depth] : "items";
        if (!Has(std::uint64_t{count} * Item{}.GetLength(), name)) {
            return;
        }
        const std::string path = m_path;
        ++m_depth;
        for (Count i = 0; i < count && !m_found; ++i) {
            m_path = path + (path.empty() ? "" : ".") + name + '[' + std::to_string(i) + ']';
            Item item;
            Item::Fields(item, *this);
        }
        --m_depth;
        m_path = path;
    }

    void Rest(const std::string&) {}

    Reason Found() const
    {
        return m_found.value_or(Reason{m_offset, "the record", "there is no memory for it"});
    }

private:
    bool Has(std::uint64_t needed, const char* list)
    {
        if (!m_found && needed > m_left.size()) {
            const bool inside = !m_path.empty() && *list != '\0';
            const std::string place = m_path + (inside ? "." : "") + list;
            m_found = Missing(m_offset, place.empty() ? "the record's head" : place, needed, m_left.size());
        }
        return !m_found;
    }

    template <class Field>
    void Copy(Field& field)
    {
        std::memcpy(static_cast<void*>(&field), m_left.data(), sizeof field);
        m_left = m_left.subspan(sizeof field);
        m_offset += sizeof field;
    }

    Bytes m_left;
    std::size_t m_offset;
    std::vector<const char*> m_lists;
    std::size_t m_depth = 0;
    std::string m_path;
    std::optional<Reason> m_found;
};

// A record with lists, after `skipped` bytes of the answer.
template <class Record>
Result<Record> ReadRecord(Bytes answer, std::size_t skipped, std::initializer_list<const char*> lists = {})
{
    const Bytes bytes = answer.subspan(skipped);
    if (bytes.size() > std::numeric_limits<unsigned int>::max()) {
        return Reason{skipped, "the record", "no record is longer than 4 GiB"};
    }
    Record record;
    if (!record.SetData(bytes.data(), static_cast<unsigned int>(bytes.size()))) {
        FaultFinder finder(bytes, skipped, lists);
        Record::Fields(record, finder);
        return finder.Found();
    }
    return record;
}

// A record that travels as it is.
template <class Image>
Result<Image> ReadWhole(Bytes answer, std::size_t skipped, const char* name)
{
    const Bytes bytes = answer.subspan(skipped);
    Image image{};
    if (bytes.size() < sizeof image) {
        return Missing(skipped, name, sizeof image, bytes.size());
    }
    std::memcpy(static_cast<void*>(&image), bytes.data(), sizeof image);
    return image;
}

// The head of an answer to an option: nothing when it is as it must be.
std::optional<Reason> FaultOfHead(Bytes answer, std::initializer_list<std::uint32_t> types)
{
    const auto head = ReadWhole<S_Decoder_Default_Result>(answer, 0, "the head of the answer");
    if (!head) {
        return head.Why();
    }
    if (std::find(types.begin(), types.end(), head->nOptType) == types.end()) {
        return Reason{offsetof(S_Decoder_Default_Result, nOptType), "nOptType",
                      "the answer is one to option type " + std::to_string(head->nOptType)};
    }
    if (head->wResultLen != sizeof(S_Decoder_Opt_Result)) {
        return Reason{offsetof(S_Decoder_Default_Result, wResultLen), "wResultLen",
                      "is " + std::to_string(head->wResultLen) + ", not 8"};
    }
    return {};
}

template <class Record>
Result<Record> ReadOption(Bytes answer, std::uint32_t type, std::initializer_list<const char*> lists = {})
{
    if (auto fault = FaultOfHead(answer, {type})) {
        return *std::move(fault);
    }
    return ReadRecord<Record>(answer, kHead, lists);
}

// --- texts in XML ---

template <class Number>
std::optional<Number> NumberIn(std::string_view text)
{
    Number number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    return whole ? std::optional(number) : std::nullopt;
}

constexpr const char* kNoXml = "is not well-formed XML, nests too deep or would take too much memory";

ChannelGroup GroupOf(const S_MTvw_Wall_Channel_Group_Info& item)
{
    return {{item._nid},
            FieldText(item._name),
            FieldText(item._td_channellist),
            item._channelnum,
            item._interval};
}

Channel ChannelOf(const CVTXMLParse& xml, CVTXMLParse::Item item)
{
    Channel channel;
    if (const auto number = NumberIn<std::int64_t>(xml.GetText(item, "id"))) {
        channel.number = ChannelNumber{*number};
    }
    if (xml.GetFirstItem(item, "name") != nullptr) {
        channel.name = xml.GetValueStr(item, "name");
    }
    channel.state = xml.GetValueStr(item, "state");
    return channel;
}

} // namespace

Result<Bytes> ReadDone(std::uint32_t answerType, Bytes answer)
{
    if (answerType == 0) {
        return answer.empty() ? Result<Bytes>(answer)
                              : Reason{0, "the answer", "there are bytes, and none belong here"};
    }
    if (auto fault = FaultOfHead(answer, {answerType})) {
        return *std::move(fault);
    }
    return answer.subspan(kHead);
}

Result<LoggedIn> ReadLogIn(Bytes answer)
{
    const auto record = ReadWhole<_net_login_success_info>(answer, 0, "the record");
    if (!record) {
        return record.Why();
    }
    return LoggedIn{record->remoteNodeID, record->remoteNodeType};
}

Result<Layout> ReadLayout(Bytes answer)
{
    const auto record = ReadRecord<S_MTvw_Wall_Layout>(answer, 0, {"screens"});
    if (!record) {
        return record.Why();
    }
    Layout layout{record->rowCol._row, record->rowCol._col, {}};
    for (const auto& item : record->_channelList) {
        layout.screens.push_back(
            {{item->_id}, {item->_coordinate._xPos, item->_coordinate._yPos}, FieldText(item->_name)});
    }
    return layout;
}

Result<SystemInfo> ReadSystemInfo(Bytes answer)
{
    if (auto fault = FaultOfHead(answer, {TVWALL_DECODE_GET_SYSINFO})) {
        return *std::move(fault);
    }
    const auto record = ReadWhole<S_Decoder_Baseinfo_Item>(answer, kHead, "the record");
    if (!record) {
        return record.Why();
    }
    return SystemInfo{FieldText(record->_name),       record->_model,
                      FieldText(record->_smodelDecs), FieldText(record->_mac),
                      FieldText(record->_sSoftVer),   FieldText(record->_sBuildDate),
                      FieldText(record->_sKernelVer), FieldText(record->_sDataVersion)};
}

Result<BasicConfig> ReadBasicConfig(Bytes answer)
{
    const auto record = ReadOption<S_MTvw_Wall_Basic_Config>(answer, TVWALL_DECODE_GET_BASICCFG);
    if (!record) {
        return record.Why();
    }
    return BasicConfig{record->_identidy, record->_runmode, record->_devicename};
}

Result<Sound> ReadSound(Bytes answer)
{
    const auto record = ReadOption<S_MTvw_Get_Audio_Config>(answer, TVWALL_DECODE_GET_AUDIO_CONFIG,
                                                            {"windows", "subWindows"});
    if (!record) {
        return record.Why();
    }
    Sound sound{{record->_nwallGuid, record->_DecGuid}, {}};
    for (const auto& item : record->_cavList) {
        auto& window = sound.windows.emplace_back();
        window.window = {item->_id};
        for (const auto& sub : item->_subList) {
            window.subWindows.push_back({{sub->_index}, {sub->_channelId}});
        }
    }
    return sound;
}

Result<std::vector<ChannelGroup>> ReadChannelGroups(Bytes answer)
{
    const auto record =
        ReadOption<S_MTvw_Wall_Get_ChGroup_info>(answer, TVWALL_DECODE_START_CHLGROUP_POLLING, {"groups"});
    if (!record) {
        return record.Why();
    }
    std::vector<ChannelGroup> groups;
    for (const auto& item : record->getChGroupList) {
        groups.push_back(GroupOf(*item));
    }
    return groups;
}

Result<DisplaySwitches> ReadDisplaySwitches(Bytes answer)
{
    if (auto fault =
            FaultOfHead(answer, {TVWALL_DECODE_SET_WINDOW_CONFIG, TVWALL_DECODE_GET_WINDOW_CONFIG})) {
        return *std::move(fault);
    }
    const CVTXMLParse xml(answer.data() + kHead, answer.size() - kHead);
    if (!xml.IsParsed()) {
        return Reason{kHead, "the text", kNoXml};
    }
    DisplaySwitches switches{xml.GetValueStr("response/id")};
    for (const auto& [name, on] : {std::pair{"response/baseInfo/enableborder", &switches.borders},
                                   std::pair{"response/baseInfo/enableshowwinid", &switches.windowIds}}) {
        const auto number = NumberIn<std::uint32_t>(xml.GetText(xml.GetFirstItem(name)));
        if (!number) {
            return Reason{kHead, name, "is not there, or no number"};
        }
        *on = *number != 0;
    }
    return switches;
}

Result<Failure> ReadFailure(Bytes record)
{
    const auto reply = ReadWhole<_kest_net_reply>(record, 0, "the record");
    if (!reply) {
        return reply.Why();
    }
    return Failure{reply->dwResult, FieldText(reply->szDescription)};
}

const char* Meaning(std::uint32_t code)
{
    switch (code) {
    case KEST_RESULT_DEVICE_ERROR:
        return "device error";
    case KEST_RESULT_TIMEOUT:
        return "timeout";
    case KEST_RESULT_NOT_READY:
        return "stopped or not logged in";
    case KEST_RESULT_LOGIN_DEVICE_103:
        return "unknown account";
    case KEST_RESULT_LOGIN_DEVICE_106:
        return "wrong password";
    case KEST_RESULT_LOGIN_DEVICE_105:
        return "too many hosts, or the account is refused";
    default:
        return "failure";
    }
}

Result<Notification> ReadNotification(std::uint32_t optType, Bytes text)
{
    if (optType != TVWALL_DECODE_NOTIFY_IORES && optType != TVWALL_DECODE_NOTIFY_IORES_STATUS) {
        return Reason{0, "nOptType", std::to_string(optType) + " is no notification"};
    }
    const CVTXMLParse xml(text.data(), text.size());
    if (!xml.IsParsed()) {
        return Reason{0, "the text", kNoXml};
    }
    auto list = xml.GetFirstItem("td_command/td_body/td_channellist");
    list = list == nullptr ? xml.GetFirstItem("td_command/td_body/td_channelstatelist") : list;
    if (list == nullptr) {
        return Reason{0, "td_channellist", "there is none in the body of the message"};
    }
    Notification notification;
    notification.kind =
        optType == TVWALL_DECODE_NOTIFY_IORES ? Notification::Kind::Channels : Notification::Kind::States;
    for (auto item = xml.GetFirstItem(list, "item"); item != nullptr;
         item = xml.GetNextSiblingItem(item, "item")) {
        notification.channels.push_back(ChannelOf(xml, item));
    }
    return notification;
}

} // namespace tvwall
