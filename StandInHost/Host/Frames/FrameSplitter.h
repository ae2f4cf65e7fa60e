#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>

namespace standin_host {

constexpr std::size_t kFrameHead = 8; // bytes of "1111" and the length

// Cuts one direction of the link into frames: a frame is "1111", a 32-bit little-endian length and that many
// bytes; a length of 0 is a heartbeat; any other four bytes begin a device head of 64 bytes.
class FrameSplitter {
public:
    enum class Kind { Frame, Heartbeat, DeviceHead };
    struct Frame {
        Kind kind;
        std::string_view
            payload;      // its first bytes, where there are more than are kept; valid until the next call
        std::size_t size; // of the whole payload
    };

    // mostKept: bytes of a payload that are kept; the rest is counted and dropped as it comes. An announced
    // length costs nothing.
    explicit FrameSplitter(std::size_t mostKept = std::numeric_limits<uint32_t>::max()) : m_mostKept(mostKept)
    {
    }

    void Feed(std::string_view bytes);
    // The next complete frame; false when more bytes are needed first.
    bool Next(Frame& frame);

private:
    bool NextPayload(std::string_view left, Frame& frame);

    const std::size_t m_mostKept;
    std::string m_buffer;
    std::size_t m_taken = 0;   // bytes at the front that Next has returned
    std::size_t m_dropped = 0; // bytes of the unfinished payload that are not kept
};

} // namespace standin_host
