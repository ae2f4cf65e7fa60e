#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace standin_host {

// "2026-11-25T20:15:27.123Z": RFC 3339 in UTC, with milliseconds.
std::string UtcText(std::chrono::system_clock::time_point time);

// "30 s", "0.5 s": tenths below 10 s.
std::string SecondsText(std::chrono::milliseconds time);

// Reads "500ms", "10s", "5m", "1h" or "2d": a whole number, not 0, and its unit; at most 1000 days. Nothing
// for other texts.
std::optional<std::chrono::milliseconds> ParseDuration(std::string_view text);

} // namespace standin_host
