#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Mutex.h"

namespace standin_host {

// Cuts one direction of the link into frames for people to read: a frame is "1111", a 32-bit little-endian
// length and that many bytes; a length of 0 is a heartbeat; any other four bytes begin a device head of 64
// bytes.
class FrameSplitter {
public:
    enum class Kind { Frame, Heartbeat, DeviceHead };
    struct Frame {
        Kind kind;
        std::string_view payload; // valid until the next call
    };

    void Feed(std::string_view bytes);
    // The next complete frame; false when more bytes are needed first.
    bool Next(Frame& frame);

private:
    std::string m_buffer;
    std::size_t m_taken = 0; // bytes at the front that Next has returned
};

// Prints every frame of one connection to standard error, with time, direction, length and text.
class FrameTrace {
public:
    void Sent(std::string_view bytes);
    void Received(std::string_view bytes);

private:
    void Print(FrameSplitter& splitter, const char* direction, std::string_view bytes);

    CMutex m_lock; // shared by both directions: keeps a frame's lines together
    FrameSplitter m_sent;
    FrameSplitter m_received;
};

} // namespace standin_host
