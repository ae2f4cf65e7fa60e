#include "Base/Text.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <cwctype>
#include <utility>

#include <locale.h>

namespace standin_host {

namespace {

constexpr char s_szHexDigits[] = "0123456789abcdef";

int HexValue(char c)
{
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'a' && c <= 'f') {
        return c - 'a' + 10;
    }
    if (c >= 'A' && c <= 'F') {
        return c - 'A' + 10;
    }
    return -1;
}

// While it lives, this thread's characters are UTF-8, whatever the terminal's are.
class CUtf8Scope {
public:
    CUtf8Scope() : m_before(::uselocale(Utf8())) {}
    ~CUtf8Scope() { ::uselocale(m_before); }
    CUtf8Scope(const CUtf8Scope&) = delete;
    CUtf8Scope& operator=(const CUtf8Scope&) = delete;

private:
    static locale_t Utf8()
    {
        static const locale_t s_utf8 = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        return s_utf8;
    }

    const locale_t m_before;
};

// The bytes of the printable character that the text begins with; 0 when it begins with none.
std::size_t PrintableBytes(std::string_view text)
{
    if (static_cast<uint8_t>(text.front()) < 0x80) {
        return text.front() >= 0x20 && text.front() != 0x7F ? 1 : 0;
    }
    std::mbstate_t state{};
    wchar_t character = 0;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): unsafe only without a state of its own
    const std::size_t nBytes = std::mbrtowc(&character, text.data(), text.size(), &state);
    return nBytes <= text.size() && std::iswprint(static_cast<wint_t>(character)) != 0 ? nBytes : 0;
}

// Where the hyphens stand in a GUID without braces.
bool IsHyphenPlace(std::size_t nPos) { return nPos == 8 || nPos == 13 || nPos == 18 || nPos == 23; }

} // namespace

std::string GuidText(const GUID& guid)
{
    const uint8_t* tail = guid.Data4;
    char szText[39];
    (void)std::snprintf(szText, sizeof szText, "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                        guid.Data1, guid.Data2, guid.Data3, tail[0], tail[1], tail[2], tail[3], tail[4],
                        tail[5], tail[6], tail[7]);
    return szText;
}

std::optional<GUID> ParseGuid(std::string_view text)
{
    if (text.size() == 38 && text.front() == '{' && text.back() == '}') {
        text = text.substr(1, 36);
    }
    if (text.size() != 36) {
        return std::nullopt;
    }
    std::string strDigits;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (IsHyphenPlace(i) != (text[i] == '-')) {
            return std::nullopt;
        }
        if (!IsHyphenPlace(i)) {
            strDigits += text[i];
        }
    }
    const auto bytes = ParseHex(strDigits);
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

std::optional<int64_t> ParseNumber(std::string_view text, int64_t nMin, int64_t nMax)
{
    const bool bNegative = text.starts_with('-');
    text.remove_prefix(bNegative ? 1 : 0);
    const bool bHex = text.starts_with("0x") || text.starts_with("0X");
    text.remove_prefix(bHex ? 2 : 0);
    int64_t nValue = 0;
    const char* pEnd = text.data() + text.size();
    const auto [pStop, error] = std::from_chars(text.data(), pEnd, nValue, bHex ? 16 : 10);
    if (error != std::errc() || pStop != pEnd || text.starts_with('-')) {
        return std::nullopt;
    }
    nValue = bNegative ? -nValue : nValue;
    return nValue < nMin || nValue > nMax ? std::nullopt : std::optional(nValue);
}

std::string HexText(const void* pData, std::size_t nLen)
{
    std::string strHex;
    strHex.reserve(nLen * 2);
    for (std::size_t i = 0; i < nLen; ++i) {
        const uint8_t byByte = static_cast<const uint8_t*>(pData)[i];
        strHex += s_szHexDigits[byByte >> 4];
        strHex += s_szHexDigits[byByte & 0xF];
    }
    return strHex;
}

std::optional<std::vector<uint8_t>> ParseHex(std::string_view text)
{
    std::vector<uint8_t> bytes;
    for (std::size_t i = 0; i < text.size();) {
        if (std::isspace(static_cast<unsigned char>(text[i])) != 0) {
            ++i;
            continue;
        }
        const int nHigh = HexValue(text[i]);
        const int nLow = i + 1 < text.size() ? HexValue(text[i + 1]) : -1;
        if (nHigh < 0 || nLow < 0) {
            return std::nullopt;
        }
        bytes.push_back(static_cast<uint8_t>(nHigh << 4 | nLow));
        i += 2;
    }
    return bytes;
}

std::optional<SAddress> SplitAddress(const std::string& strAddress)
{
    const std::size_t nColon = strAddress.rfind(':');
    if (nColon == std::string::npos) {
        return std::nullopt;
    }
    std::string strHost = strAddress.substr(0, nColon);
    if (strHost.size() > 2 && strHost.front() == '[' && strHost.back() == ']') {
        strHost = strHost.substr(1, strHost.size() - 2);
    }
    const std::string strPort = strAddress.substr(nColon + 1);
    const bool bDecimal = strPort.find_first_not_of("0123456789") == std::string::npos;
    const auto nPort = ParseNumber(strPort, 1, 65535);
    if (strHost.empty() || !bDecimal || !nPort) {
        return std::nullopt;
    }
    return SAddress{std::move(strHost), static_cast<uint16_t>(*nPort)};
}

std::string OneLine(std::string_view text)
{
    const CUtf8Scope utf8;
    std::string strLine;
    bool bLineEnd = false;
    while (!text.empty()) {
        if (text.front() == '\n' || text.front() == '\r') {
            bLineEnd = true;
            text.remove_prefix(1);
            continue;
        }
        if (bLineEnd && !strLine.empty()) {
            strLine += ' ';
        }
        bLineEnd = false;
        const std::size_t nPrintable = PrintableBytes(text);
        strLine +=
            nPrintable != 0 ? std::string(text.substr(0, nPrintable)) : "\\x" + HexText(text.data(), 1);
        text.remove_prefix(std::max<std::size_t>(nPrintable, 1));
    }
    return strLine;
}

} // namespace standin_host
