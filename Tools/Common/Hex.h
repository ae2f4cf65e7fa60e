#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tools {

enum class HexCase { Lower, Upper };

// Two digits per byte, no separators.
std::string HexText(const void* data, std::size_t size, HexCase letters = HexCase::Lower);
// "0x50002".
std::string HexNumber(std::uint32_t number);
// Digit pairs of either case; white space between pairs is skipped. Nothing if there is anything else.
std::optional<std::vector<std::uint8_t>> ParseHex(std::string_view text);

} // namespace tools
