#pragma once
// The messages about input channels: what hosts are told unasked, and what they get when they ask.

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

// Notifications about channels that are made up: by turns the list of the channels and the list of their
// states. Unless their length is fixed, both lists grow by one channel from pair to pair and start over at
// 256, so that the lengths vary.
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
