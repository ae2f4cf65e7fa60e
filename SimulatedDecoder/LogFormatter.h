#pragma once

#include <memory>

#include <spdlog/formatter.h>

namespace simulated_decoder {

// Time, level in colour, and the message as one printable line.
std::unique_ptr<spdlog::formatter> LogFormatter();

} // namespace simulated_decoder
