#include "Base/GuidText.h"

#include <cstdint>
#include <cstdio>
#include <cstring>

#include "Tools/Common/Hex.h"

namespace standin_host {

namespace {

// Positions of the hyphens in a GUID without braces.
bool IsHyphenPlace(std::size_t pos) { return pos == 8 || pos == 13 || pos == 18 || pos == 23; }

} // namespace

std::string GuidText(const GUID& guid)
{
    const uint8_t* tail = guid.Data4;
    char text[39];
    (void)std::snprintf(text, sizeof text, "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}", guid.Data1,
                        guid.Data2, guid.Data3, tail[0], tail[1], tail[2], tail[3], tail[4], tail[5], tail[6],
                        tail[7]);
    return text;
}

std::optional<GUID> ParseGuid(std::string_view text)
{
    if (text.size() == 38 && text.front() == '{' && text.back() == '}') {
        text = text.substr(1, 36);
    }
    if (text.size() != 36) {
        return std::nullopt;
    }
    std::string digits;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (IsHyphenPlace(i) != (text[i] == '-')) {
            return std::nullopt;
        }
        if (!IsHyphenPlace(i)) {
            digits += text[i];
        }
    }
    const auto bytes = tools::ParseHex(digits);
    if (!bytes || bytes->size() != sizeof(GUID)) {
        return std::nullopt;
    }
    const auto& b = *bytes;
    GUID guid{};
    guid.Data1 = static_cast<uint32_t>(b[0]) << 24 | static_cast<uint32_t>(b[1]) << 16 |
                 static_cast<uint32_t>(b[2]) << 8 | b[3];
    guid.Data2 = static_cast<uint16_t>(b[4] << 8 | b[5]);
    guid.Data3 = static_cast<uint16_t>(b[6] << 8 | b[7]);
    std::memcpy(guid.Data4, b.data() + 8, sizeof guid.Data4);
    return guid;
}

} // namespace standin_host
