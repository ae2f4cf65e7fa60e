#include "Tools/Common/Hex.h"

#include <cstdio>

namespace tools {

namespace {

int DigitValue(char c)
{
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

} // namespace

std::string HexText(const void* data, std::size_t size, HexCase letters)
{
    const char* digits = letters == HexCase::Upper ? "0123456789ABCDEF" : "0123456789abcdef";
    std::string text;
    text.reserve(size * 2);
    for (const char byte : std::string_view(static_cast<const char*>(data), size)) {
        text += digits[static_cast<std::uint8_t>(byte) >> 4];
        text += digits[static_cast<std::uint8_t>(byte) & 0xF];
    }
    return text;
}

std::string HexNumber(std::uint32_t number)
{
    char digits[11];
    (void)std::snprintf(digits, sizeof digits, "0x%X", number);
    return digits;
}

std::optional<std::vector<std::uint8_t>> ParseHex(std::string_view text)
{
    constexpr std::string_view kSpace = " \t\n\v\f\r";
    std::vector<std::uint8_t> bytes;
    for (std::size_t i = 0; i < text.size();) {
        if (kSpace.find(text[i]) != std::string_view::npos) {
            ++i;
            continue;
        }
        const int high = DigitValue(text[i]);
        const int low = i + 1 < text.size() ? DigitValue(text[i + 1]) : -1;
        if (high < 0 || low < 0) {
            return std::nullopt;
        }
        bytes.push_back(static_cast<std::uint8_t>(high << 4 | low));
        i += 2;
    }
    return bytes;
}

} // namespace tools
