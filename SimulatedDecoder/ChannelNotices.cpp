#include "ChannelNotices.h"

#include <optional>

#include "Message.h"

namespace simulated_decoder {

namespace {

constexpr std::uint32_t kMaxChannels = 256;

template <typename Fill>
std::string Notice(const char* url, const char* listName, std::uint32_t channels, Fill fill)
{
    Message message("notify", url, std::nullopt);
    tinyxml2::XMLElement& list = AddChild(message.Body(), listName);
    for (std::uint32_t id = 1; id <= channels; ++id) {
        tinyxml2::XMLElement& item = AddChild(list, "item");
        AddChild(item, "id", std::to_string(id));
        fill(item, id);
    }
    return message.Text();
}

} // namespace

std::string ChannelNotices::Next()
{
    if (!m_states) {
        m_channels = m_fixed != 0 ? m_fixed : m_channels % kMaxChannels + 1;
    }
    std::string text = m_states ? States() : Channels();
    m_states = !m_states;
    return text;
}

std::string ChannelNotices::Channels() const
{
    return Notice("notifychannelchange", "td_channellist", m_channels,
                  [](tinyxml2::XMLElement& item, std::uint32_t id) {
                      AddChild(item, "name", "Camera " + std::to_string(id));
                  });
}

std::string ChannelNotices::States() const
{
    return Notice("notifychannelstate", "td_channelstatelist", m_channels,
                  [this](tinyxml2::XMLElement& item, std::uint32_t id) {
                      AddChild(item, "state", (id + m_channels) % 3 != 0 ? "online" : "offline");
                  });
}

} // namespace simulated_decoder
