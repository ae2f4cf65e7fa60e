#include "Host/Frames/FrameSplitter.h"

#include <algorithm>

namespace standin_host {

namespace {

constexpr std::size_t kDeviceHead = 64;

std::size_t AnnouncedLength(std::string_view head)
{
    std::size_t length = 0;
    for (int i = 3; i >= 0; --i) {
        length = length << 8 | static_cast<uint8_t>(head[4 + static_cast<std::size_t>(i)]);
    }
    return length;
}

} // namespace

void FrameSplitter::Feed(std::string_view bytes)
{
    m_buffer.erase(0, m_taken);
    m_taken = 0;
    m_buffer.append(bytes);
}

bool FrameSplitter::Next(Frame& frame)
{
    const std::string_view left = std::string_view(m_buffer).substr(m_taken);
    if (left.size() < kFrameHead) {
        return false;
    }
    if (left.starts_with("1111")) {
        return NextPayload(left, frame);
    }
    if (left.size() < kDeviceHead) {
        return false;
    }
    frame = {Kind::DeviceHead, left.substr(0, kDeviceHead), kDeviceHead};
    m_taken += kDeviceHead;
    return true;
}

bool FrameSplitter::NextPayload(std::string_view left, Frame& frame)
{
    const std::size_t length = AnnouncedLength(left);
    const std::size_t here = left.size() - kFrameHead;
    if (here + m_dropped < length) {
        const std::size_t excess = here - std::min(here, m_mostKept);
        m_buffer.resize(m_buffer.size() - excess);
        m_dropped += excess;
        return false;
    }
    const std::size_t rest = length - m_dropped; // of this payload, in the buffer
    frame = {length == 0 ? Kind::Heartbeat : Kind::Frame, left.substr(kFrameHead, std::min(rest, m_mostKept)),
             length};
    m_taken += kFrameHead + rest;
    m_dropped = 0;
    return true;
}

} // namespace standin_host
