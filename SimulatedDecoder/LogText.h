#pragma once
// What goes to a terminal: whoever reads it there shall see what others wrote, not have it carried out.

#include <memory>
#include <string>
#include <string_view>

#include <spdlog/formatter.h>

namespace simulated_decoder {

// The text with each control character (below U+0020, U+007F to U+009F) and each byte that is no UTF-8
// written as \xHH, one for each of its bytes.
std::string Visible(std::string_view text);

// Time, level in colour, and the message made visible.
std::unique_ptr<spdlog::formatter> LogFormatter();

} // namespace simulated_decoder
