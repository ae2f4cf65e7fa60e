#include "Host/FrameTrace.h"

#include <chrono>
#include <cstdio>
#include <ctime>

#include "Base/ErrorLines.h"
#include "Tools/Common/TerminalText.h"

namespace standin_host {

namespace {

constexpr std::size_t kFrameHead = 8;
constexpr std::size_t kDeviceHead = 64;

std::size_t AnnouncedLength(std::string_view head)
{
    std::size_t length = 0;
    for (int i = 3; i >= 0; --i) {
        length = length << 8 | static_cast<uint8_t>(head[4 + static_cast<std::size_t>(i)]);
    }
    return length;
}

std::string TimeOfDay()
{
    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    const auto millis =
        std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
    std::tm local{};
    ::localtime_r(&seconds, &local);
    char time[32];
    (void)std::snprintf(time, sizeof time, "%02d:%02d:%02d.%03d", local.tm_hour, local.tm_min, local.tm_sec,
                        static_cast<int>(millis));
    return time;
}

std::string Describe(const FrameSplitter::Frame& frame)
{
    switch (frame.kind) {
    case FrameSplitter::Kind::Heartbeat:
        return "8 bytes: heartbeat";
    case FrameSplitter::Kind::DeviceHead:
        return "64 bytes: device head";
    case FrameSplitter::Kind::Frame:
        break;
    }
    return std::to_string(frame.payload.size() + kFrameHead) + " bytes: " + tools::OneLine(frame.payload);
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
    if (!left.starts_with("1111")) {
        if (left.size() < kDeviceHead) {
            return false;
        }
        frame = {Kind::DeviceHead, left.substr(0, kDeviceHead)};
        m_taken += kDeviceHead;
        return true;
    }
    const std::size_t length = AnnouncedLength(left);
    if (left.size() - kFrameHead < length) {
        return false;
    }
    frame = {length == 0 ? Kind::Heartbeat : Kind::Frame, left.substr(kFrameHead, length)};
    m_taken += kFrameHead + length;
    return true;
}

void FrameTrace::Sent(std::string_view bytes) { Print(m_sent, "sent", bytes); }

void FrameTrace::Received(std::string_view bytes) { Print(m_received, "received", bytes); }

void FrameTrace::Print(FrameSplitter& splitter, const char* direction, std::string_view bytes)
{
    const TMutexGuard guard(m_lock);
    splitter.Feed(bytes);
    FrameSplitter::Frame frame;
    while (splitter.Next(frame)) {
        PrintErrorLines(TimeOfDay() + ' ' + direction + ' ' + Describe(frame) + '\n');
    }
}

} // namespace standin_host
