#pragma once

#include <chrono>
#include <string>

namespace standin_host {

// "2026-11-25T20:15:27.123Z": RFC 3339 in UTC, with milliseconds.
std::string UtcText(std::chrono::system_clock::time_point time);

} // namespace standin_host
