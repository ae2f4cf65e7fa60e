#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace simulated_decoder {

inline constexpr std::size_t kMaxChannels = 4096;

struct InputChannel {
    std::int32_t id = 0; // from 1
    std::string name;    // UTF-8 without control characters
    bool online = true;
    bool operator==(const InputChannel&) const = default;
};

// What has changed in the channels.
struct ChannelChange {
    bool list = false;   // channels were added, removed or renamed
    bool states = false; // some went offline or online
};

// The sources that the decoder can show by channel number.
class InputChannels {
public:
    // "Camera 1" and so on, all of them online.
    static InputChannels MadeUp(std::int32_t count);
    // From a file with a JSON list of {"id":1,"name":"Gate","online":true}, each id once; throws
    // std::runtime_error with one line for the user when it cannot be read.
    static InputChannels Load(const std::string& path);

    const std::vector<InputChannel>& All() const { return m_channels; }
    bool Has(std::int32_t id) const;
    bool IsOnline(const InputChannel& channel) const { return channel.online && !m_outage; }

    ChannelChange Replace(const InputChannels& next);
    // During an outage no channel is online.
    void SetOutage(bool outage) { m_outage = outage; }
    bool IsOutage() const { return m_outage; }

private:
    std::vector<InputChannel> m_channels;
    bool m_outage = false;
};

} // namespace simulated_decoder
