#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace simulated_decoder {

// The notifications about input channels, made up: by turns the list of the channels and the list of their
// states. Unless their length is fixed, both lists grow by one channel from pair to pair and start over at
// 256, so that the lengths vary.
class ChannelNotices {
public:
    // The number of channels in every list; 0: it varies.
    explicit ChannelNotices(std::uint32_t fixed) : m_fixed(fixed) {}

    // The XML text of the next notification. It carries no `seq`: it answers nothing.
    std::string Next();

private:
    std::string Channels() const;
    std::string States() const;

    std::uint32_t m_fixed;
    std::uint32_t m_channels = 0;
    bool m_states = false;
};

} // namespace simulated_decoder
