#include "Tools/Common/Numbers.h"

namespace tools {

std::optional<std::int64_t> ParseNumber(std::string_view text, std::int64_t lowest, std::int64_t highest)
{
    const bool negative = text.starts_with('-');
    text.remove_prefix(negative ? 1 : 0);
    const bool hex = text.starts_with("0x") || text.starts_with("0X");
    text.remove_prefix(hex ? 2 : 0);
    std::int64_t value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, hex ? 16 : 10);
    if (error != std::errc() || stop != end || text.starts_with('-')) {
        return std::nullopt;
    }
    value = negative ? -value : value;
    return value < lowest || value > highest ? std::nullopt : std::optional(value);
}

} // namespace tools
