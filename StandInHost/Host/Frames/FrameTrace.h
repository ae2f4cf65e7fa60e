#pragma once

#include <string_view>

#include "Host/Frames/FrameSplitter.h"
#include "Mutex.h"

namespace standin_host {

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
