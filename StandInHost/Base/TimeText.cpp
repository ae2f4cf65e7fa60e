#include "Base/TimeText.h"

#include <cstdio>
#include <ctime>

namespace standin_host {

std::string UtcText(std::chrono::system_clock::time_point time)
{
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
    const auto millis = std::chrono::floor<std::chrono::milliseconds>(time - seconds).count();
    const std::time_t clock = std::chrono::system_clock::to_time_t(seconds);
    std::tm utc{};
    ::gmtime_r(&clock, &utc);
    char date[32];
    (void)std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &utc);
    char text[48];
    (void)std::snprintf(text, sizeof text, "%s.%03dZ", date, static_cast<int>(millis));
    return text;
}

} // namespace standin_host
