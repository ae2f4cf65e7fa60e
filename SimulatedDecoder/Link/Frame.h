#pragma once
// The frames of the link: "1111", the payload's length as a 32-bit little-endian number, the payload. A frame
// with length 0 is a heartbeat.

#include <cstddef>
#include <string>
#include <string_view>

namespace simulated_decoder {

inline constexpr std::size_t kFrameHeadLength = 8;
inline constexpr std::size_t kDeviceHeadLength = 64;
// A host that announces more is cut off; the announcement alone costs no memory.
inline constexpr std::size_t kMaxPayload = std::size_t{16} * 1024 * 1024;

// The frame around a payload of at most kMaxPayload bytes; an empty payload gives the heartbeat.
std::string EncodeFrame(std::string_view payload);

// A device head: 64 bytes that a decoder may put before a frame. It does not begin with "1111" but contains
// it, to catch a host that searches for it instead of counting.
std::string DeviceHead();

// Cuts one connection's stream into frames.
class FrameReader {
public:
    enum class Result {
        Payload, // the argument holds one payload
        Heartbeat,
        NeedMore, // no complete frame is left
        BadHead,  // hosts send no device heads, so this is not our link; fatal
        TooLong,  // more than kMaxPayload announced; fatal
    };

    void Feed(std::string_view bytes);
    Result Next(std::string& payload);

private:
    std::string m_buffer;
    std::size_t m_taken = 0; // bytes at the front of m_buffer that Next has returned
};

} // namespace simulated_decoder
