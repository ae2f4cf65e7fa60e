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
    std::size_t nLength = 0;
    for (int i = 3; i >= 0; --i) {
        nLength = nLength << 8 | static_cast<uint8_t>(head[4 + static_cast<std::size_t>(i)]);
    }
    return nLength;
}

std::string TimeOfDay()
{
    const auto now = std::chrono::system_clock::now();
    const std::time_t nSeconds = std::chrono::system_clock::to_time_t(now);
    const auto nMillis =
        std::chrono::duration_cast<std::chrono::milliseconds>(now.time_since_epoch()).count() % 1000;
    std::tm local{};
    ::localtime_r(&nSeconds, &local);
    char szTime[32];
    (void)std::snprintf(szTime, sizeof szTime, "%02d:%02d:%02d.%03d", local.tm_hour, local.tm_min,
                        local.tm_sec, static_cast<int>(nMillis));
    return szTime;
}

std::string Describe(const CFrameSplitter::SFrame& frame)
{
    switch (frame.kind) {
    case CFrameSplitter::EKind::Heartbeat:
        return "8 bytes: heartbeat";
    case CFrameSplitter::EKind::DeviceHead:
        return "64 bytes: device head";
    case CFrameSplitter::EKind::Frame:
        break;
    }
    return std::to_string(frame.payload.size() + kFrameHead) + " bytes: " + tools::OneLine(frame.payload);
}

} // namespace

void CFrameSplitter::Feed(std::string_view bytes)
{
    m_strBuffer.erase(0, m_nTaken);
    m_nTaken = 0;
    m_strBuffer.append(bytes);
}

bool CFrameSplitter::Next(SFrame& frame)
{
    const std::string_view left = std::string_view(m_strBuffer).substr(m_nTaken);
    if (left.size() < kFrameHead) {
        return false;
    }
    if (!left.starts_with("1111")) {
        if (left.size() < kDeviceHead) {
            return false;
        }
        frame = {EKind::DeviceHead, left.substr(0, kDeviceHead)};
        m_nTaken += kDeviceHead;
        return true;
    }
    const std::size_t nLength = AnnouncedLength(left);
    if (left.size() - kFrameHead < nLength) {
        return false;
    }
    frame = {nLength == 0 ? EKind::Heartbeat : EKind::Frame, left.substr(kFrameHead, nLength)};
    m_nTaken += kFrameHead + nLength;
    return true;
}

void CFrameTrace::Sent(std::string_view bytes) { Print(m_sent, "sent", bytes); }

void CFrameTrace::Received(std::string_view bytes) { Print(m_received, "received", bytes); }

void CFrameTrace::Print(CFrameSplitter& splitter, const char* szDirection, std::string_view bytes)
{
    const TMutexGuard guard(m_lock);
    splitter.Feed(bytes);
    CFrameSplitter::SFrame frame;
    while (splitter.Next(frame)) {
        PrintErrorLines(TimeOfDay() + ' ' + szDirection + ' ' + Describe(frame) + '\n');
    }
}

} // namespace standin_host
