#pragma once
// The messages about input channels: notifications, and replies to hosts that ask.

#include <cstdint>
#include <optional>
#include <string>

#include <tinyxml2.h>

#include "State/InputChannels.h"

namespace simulated_decoder {

// Adds td_channellist: the channels with names and states.
void AddChannelList(tinyxml2::XMLElement& body, const InputChannels& channels);

// The XML texts of the notifications, with a number or without one.
std::string ChannelChangeNotice(const InputChannels& channels, std::optional<std::uint32_t> seq);
std::string ChannelStateNotice(const InputChannels& channels, std::optional<std::uint32_t> seq);

// Notifications about made-up channels: alternately the list of channels and the list of their states. Unless
// their length is fixed, both lists grow by one channel from pair to pair, up to 256 and then from the start,
// so that lengths vary.
class MadeUpNotices {
public:
    // The number of channels in every list; 0: it varies.
    explicit MadeUpNotices(std::int32_t fixed) : m_fixed(fixed) {}

    std::string Next(std::optional<std::uint32_t> seq);

private:
    std::int32_t m_fixed;
    std::int32_t m_channels = 0;
    bool m_states = false;
};

} // namespace simulated_decoder
