#include "Page/InputsText.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include <nlohmann/json.hpp>

namespace simulated_decoder {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kMostNamed = 20;

// The windows that show something, from the highest layer down, up to a limit.
class Viewers {
public:
    void Add(std::uint32_t window)
    {
        if (std::find(m_windows.begin(), m_windows.end(), window) != m_windows.end()) {
            return;
        }
        m_more = m_more || m_windows.size() == kMostNamed;
        if (!m_more) {
            m_windows.push_back(window);
        }
    }
    void Add(const Viewers& others)
    {
        std::for_each(others.m_windows.begin(), others.m_windows.end(), [this](auto id) { Add(id); });
        m_more = m_more || others.m_more;
    }
    void AddTo(Json& json) const
    {
        json["windows"] = m_windows;
        json["more"] = m_more;
    }

private:
    std::vector<std::uint32_t> m_windows;
    bool m_more = false;
};

struct Polling {
    std::size_t count = 0; // sub-windows
    Viewers viewers;
    Json by = Json::array(); // these sub-windows, up to the limit
};

std::map<std::int32_t, Polling> SeePolling(const Wall& wall)
{
    std::map<std::int32_t, Polling> polled;
    for (auto window = wall.Windows().rbegin(); window != wall.Windows().rend(); ++window) {
        for (const SubWindow& subWindow : window->split.subWindows) {
            if (!subWindow.polledGroup) {
                continue;
            }
            Polling& polling = polled[*subWindow.polledGroup];
            ++polling.count;
            polling.viewers.Add(window->id);
            if (polling.count <= kMostNamed) {
                polling.by.push_back({{"window", window->id}, {"index", subWindow.index}});
            }
        }
    }
    return polled;
}

Json GroupJson(const ChannelGroup& group, const Polling& polling)
{
    return {{"id", group.id},
            {"name", group.name},
            {"channels", group.channels},
            {"interval", group.interval},
            {"polling", polling.count},
            {"polledBy", polling.by}};
}

Json ChannelJson(const InputChannel& channel, bool online, const Viewers& viewers)
{
    Json json{{"id", channel.id}, {"name", channel.name}, {"online", online}};
    viewers.AddTo(json);
    return json;
}

} // namespace

std::string InputsJson(const DeviceState& state)
{
    auto polled = SeePolling(state.wall);
    std::map<std::int32_t, Viewers> viewers; // by channel
    Json groups = Json::array();
    for (const auto& [id, group] : state.groups.All()) {
        groups.push_back(GroupJson(group, polled[id]));
        for (const std::int32_t channel : group.channels) {
            viewers[channel].Add(polled[id].viewers);
        }
    }
    Json channels = Json::array();
    for (const InputChannel& channel : state.channels.All()) {
        channels.push_back(ChannelJson(channel, state.channels.IsOnline(channel), viewers[channel.id]));
    }
    return Json{{"channels", channels}, {"groups", groups}}.dump(-1, ' ', false,
                                                                 Json::error_handler_t::replace);
}

} // namespace simulated_decoder
