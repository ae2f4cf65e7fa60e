#include "State/ChannelNotices.h"

#include "Link/Message.h"

namespace simulated_decoder {

namespace {

constexpr std::int32_t kMostMadeUp = 256;

const char* StateOf(const InputChannels& channels, const InputChannel& channel)
{
    return channels.IsOnline(channel) ? "online" : "offline";
}

} // namespace

void AddChannelList(tinyxml2::XMLElement& body, const InputChannels& channels)
{
    tinyxml2::XMLElement& list = AddChild(body, "td_channellist");
    for (const InputChannel& channel : channels.All()) {
        tinyxml2::XMLElement& item = AddChild(list, "item");
        AddChild(item, "id", channel.id);
        AddChild(item, "name", channel.name);
        AddChild(item, "state", StateOf(channels, channel));
    }
}

std::string ChannelChangeNotice(const InputChannels& channels, std::optional<std::uint32_t> seq)
{
    Message message("notify", "notifychannelchange", seq);
    AddChannelList(message.Body(), channels);
    return message.Text();
}

std::string ChannelStateNotice(const InputChannels& channels, std::optional<std::uint32_t> seq)
{
    Message message("notify", "notifychannelstate", seq);
    tinyxml2::XMLElement& list = AddChild(message.Body(), "td_channelstatelist");
    for (const InputChannel& channel : channels.All()) {
        tinyxml2::XMLElement& item = AddChild(list, "item");
        AddChild(item, "id", channel.id);
        AddChild(item, "state", StateOf(channels, channel));
    }
    return message.Text();
}

std::string MadeUpNotices::Next(std::optional<std::uint32_t> seq)
{
    if (!m_states) {
        m_channels = m_fixed != 0 ? m_fixed : m_channels % kMostMadeUp + 1;
    }
    const InputChannels channels = InputChannels::MadeUp(m_channels);
    std::string text = m_states ? ChannelStateNotice(channels, seq) : ChannelChangeNotice(channels, seq);
    m_states = !m_states;
    return text;
}

} // namespace simulated_decoder
