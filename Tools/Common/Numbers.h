#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>
#include <system_error>

namespace tools {

// The whole text as a decimal number; nothing when it holds anything else or does not fit.
template <typename Number>
std::optional<Number> ParseDecimal(std::string_view text)
{
    Number value{};
    // cppcheck-suppress invalidLifetime ; the text outlives the call
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

// Decimal or, after 0x, hexadecimal; a leading minus is accepted. Nothing when text is left over or the
// number lies outside lowest..highest.
std::optional<std::int64_t> ParseNumber(std::string_view text, std::int64_t lowest, std::int64_t highest);

} // namespace tools
