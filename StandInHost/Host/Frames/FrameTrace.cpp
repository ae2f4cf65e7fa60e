#include "Host/Frames/FrameTrace.h"

#include <chrono>
#include <cstdio>
#include <ctime>

#include "Base/ErrorLines.h"
#include "Tools/Common/TerminalText.h"

namespace standin_host {

namespace {

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
    return std::to_string(frame.size + kFrameHead) + " bytes: " + tools::OneLine(frame.payload);
}

} // namespace

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
