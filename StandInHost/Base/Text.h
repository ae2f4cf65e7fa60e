#pragma once
// Text forms of numbers, identifiers and bytes.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "HostTypes.h"

namespace standin_host {

// "{00112233-4455-6677-8899-AABBCCDDEEFF}".
std::string GuidText(const GUID& guid);
// With or without braces, either letter case.
std::optional<GUID> ParseGuid(std::string_view text);

// Decimal or, after 0x, hexadecimal; a leading minus is accepted. Nothing when text is left over or the
// number lies outside nMin..nMax.
std::optional<int64_t> ParseNumber(std::string_view text, int64_t nMin, int64_t nMax);

// Lower-case digits without separators.
std::string HexText(const void* pData, std::size_t nLen);
// Digit pairs of either case; white space between pairs is skipped.
std::optional<std::vector<uint8_t>> ParseHex(std::string_view text);

struct SAddress {
    std::string strHost; // without the brackets of "[address]:port"
    uint16_t nPort;
};

// "host:port" or "[address]:port" with a decimal port from 1 to 65535.
std::optional<SAddress> SplitAddress(const std::string& strAddress);

// Bytes from outside, fit for a terminal: line ends become one blank; what is no printable character of
// UTF-8, control characters of one byte and of two, becomes "\xNN" byte by byte.
std::string OneLine(std::string_view text);

} // namespace standin_host
