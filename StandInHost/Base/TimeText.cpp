#include "Base/TimeText.h"

#include <charconv>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <utility>

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

std::string SecondsText(std::chrono::milliseconds time)
{
    const auto tenths = (time.count() + 50) / 100;
    const std::string seconds = std::to_string(tenths / 10);
    return seconds + (tenths >= 100 || tenths % 10 == 0 ? "" : '.' + std::to_string(tenths % 10)) + " s";
}

std::optional<std::chrono::milliseconds> ParseDuration(std::string_view text)
{
    using namespace std::chrono;
    static constexpr std::pair<std::string_view, milliseconds> kUnits[] = {
        {"ms", 1ms}, {"s", 1s}, {"m", 1min}, {"h", 1h}, {"d", 24h}};
    int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const std::string_view unit = text.substr(static_cast<std::size_t>(end - text.data()));
    for (const auto& [name, length] : kUnits) {
        if (error == std::errc() && unit == name && number > 0 && number <= 1000 * (24h / length)) {
            return number * length;
        }
    }
    return std::nullopt;
}

} // namespace standin_host
