#pragma once
// The frames of the link: "1111", the payload's length as 32-bit little-endian number, the payload. A frame
// with length 0 is a heartbeat.

#include <cstddef>
#include <string>
#include <string_view>

namespace simulated_decoder {

inline constexpr std::size_t kFrameHeadLength = 8;
inline constexpr std::size_t kDeviceHeadLength = 64;
// A host that announces more is cut off; its word alone costs no memory.
inline constexpr std::size_t kMaxPayload = std::size_t{16} * 1024 * 1024;

// The frame around a payload of at most kMaxPayload bytes; an empty payload gives the heartbeat.
std::string EncodeFrame(std::string_view payload);

// 64 bytes that a device may put in front of a frame. They do not begin with "1111", but hold it, so that a
// host that searches for it instead of counting goes wrong.
std::string DeviceHead();

// Cuts one connection's stream into frames.
class FrameReader {
public:
    enum class Result {
        Payload, // one payload is in the argument
        Heartbeat,
        NeedMore, // nothing complete is left
        BadHead,  // hosts send no device heads, so this is not our link; no way to go on
        TooLong,  // more than kMaxPayload announced; no way to go on
    };

    void Feed(std::string_view bytes);
    Result Next(std::string& payload);

private:
    std::string m_buffer;
    std::size_t m_taken = 0; // bytes at the front of m_buffer that Next has handed out
};

} // namespace simulated_decoder
