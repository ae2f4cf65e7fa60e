#include "State/InputChannels.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <set>
#include <stdexcept>
#include <system_error>

#include <nlohmann/json.hpp>

#include "Link/Message.h"

namespace simulated_decoder {

namespace {

constexpr std::size_t kMaxNameLength = 255;

InputChannel ReadChannel(const nlohmann::json& item)
{
    if (!item.at("id").is_number_integer()) {
        throw std::runtime_error("an id is no whole number");
    }
    const auto id = item.at("id").get<std::int64_t>();
    InputChannel channel{0, item.at("name").get<std::string>(), item.at("online").get<bool>()};
    if (id < 1 || id > INT32_MAX) {
        throw std::runtime_error("the id " + std::to_string(id) + " is not from 1 to 2147483647");
    }
    channel.id = static_cast<std::int32_t>(id);
    if (channel.name.empty() || channel.name.size() > kMaxNameLength || HasControls(channel.name)) {
        throw std::runtime_error("the name of channel " + std::to_string(id) + " cannot be used");
    }
    return channel;
}

std::vector<InputChannel> ReadChannels(std::istream& file)
{
    const nlohmann::json list = nlohmann::json::parse(file);
    if (!list.is_array() || list.size() > kMaxChannels) {
        throw std::runtime_error("it is no list of at most " + std::to_string(kMaxChannels) + " channels");
    }
    std::vector<InputChannel> channels;
    std::set<std::int32_t> ids;
    for (const nlohmann::json& item : list) {
        channels.push_back(ReadChannel(item));
        if (!ids.insert(channels.back().id).second) {
            throw std::runtime_error("channel " + std::to_string(channels.back().id) + " is given twice");
        }
    }
    return channels;
}

} // namespace

InputChannels InputChannels::MadeUp(std::int32_t count)
{
    InputChannels made;
    for (std::int32_t id = 1; id <= count; ++id) {
        made.m_channels.push_back({id, "Camera " + std::to_string(id), true});
    }
    return made;
}

InputChannels InputChannels::Load(const std::string& path)
{
    std::ifstream file(path);
    if (!file) {
        throw std::runtime_error("cannot read channels from " + path + ": " +
                                 std::generic_category().message(errno));
    }
    try {
        InputChannels loaded;
        loaded.m_channels = ReadChannels(file);
        return loaded;
    } catch (const nlohmann::json::parse_error& error) {
        throw std::runtime_error("cannot read channels from " + path + ": it is no valid JSON from byte " +
                                 std::to_string(error.byte) + " on");
    } catch (const nlohmann::json::exception&) {
        throw std::runtime_error("cannot read channels from " + path +
                                 ": each channel has a number id, a text name, and online true or false");
    } catch (const std::exception& error) {
        throw std::runtime_error("cannot read channels from " + path + ": " + error.what());
    }
}

bool InputChannels::Has(std::int32_t id) const
{
    return std::any_of(m_channels.begin(), m_channels.end(),
                       [id](const InputChannel& channel) { return channel.id == id; });
}

ChannelChange InputChannels::Replace(const InputChannels& next)
{
    ChannelChange change;
    change.list = !std::equal(
        m_channels.begin(), m_channels.end(), next.m_channels.begin(), next.m_channels.end(),
        [](const InputChannel& a, const InputChannel& b) { return a.id == b.id && a.name == b.name; });
    // A changed list brings its own states.
    change.states = change.list || m_channels != next.m_channels;
    m_channels = next.m_channels;
    return change;
}

} // namespace simulated_decoder
