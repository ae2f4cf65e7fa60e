#include "VTXMLParse.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>
#include <tinyxml2.h>

namespace {

bool HasName(const tinyxml2::XMLNode& node, std::string_view name)
{
    const char* szName = node.Value();
    return !name.empty() && *szName == name.front() && // most names differ here
           std::strncmp(szName, name.data(), name.size()) == 0 && szName[name.size()] == '\0';
}

CVTXMLParse::Item Descend(const tinyxml2::XMLNode* pNode, std::string_view path)
{
    while (pNode != nullptr && !path.empty()) {
        const std::string_view name = path.substr(0, path.find('/'));
        path.remove_prefix(std::min(path.size(), name.size() + 1));
        pNode = pNode->FirstChildElement();
        while (pNode != nullptr && !HasName(*pNode, name)) {
            pNode = pNode->NextSiblingElement();
        }
    }
    return pNode == nullptr ? nullptr : pNode->ToElement();
}

// The number that begins with the usual few digits; all else is left to the library's functions, which take
// much longer.
std::optional<uint32_t> ReadDigits(const char* szText)
{
    constexpr std::ptrdiff_t MAX_DIGITS = 9; // more might not fit
    uint32_t nValue = 0;
    const char* p = szText;
    for (; *p >= '0' && *p <= '9'; ++p) {
        if (p - szText == MAX_DIGITS) {
            return std::nullopt;
        }
        nValue = 10 * nValue + static_cast<uint32_t>(*p - '0');
    }
    return p == szText ? std::nullopt : std::optional(nValue);
}

const char* TextOf(CVTXMLParse::Item item)
{
    const char* szText = item == nullptr ? nullptr : item->GetText();
    return szText == nullptr ? "" : szText;
}

// Longer texts, and texts with more marks ('<'), are refused: the parser takes up to some fifty times the
// memory of the text. The sound of 4,096 windows with 64 sub-windows each has room, 80,000 screens with names
// as long as their field, too.
constexpr size_t MAX_TEXT_LEN = size_t{32} << 20;
constexpr size_t MAX_MARKS = size_t{2} << 20;

bool IsTooLarge(std::string_view text)
{
    return text.size() > MAX_TEXT_LEN ||
           static_cast<size_t>(std::count(text.begin(), text.end(), '<')) > MAX_MARKS;
}

// More attributes on one element than this are refused. Decoders write none, and the parser compares each one
// with all before it, so that a message of a few hundred kilobytes could keep a worker busy for minutes.
constexpr size_t MAX_ATTRIBUTES = 32;

// Behind the end of what begins at the start of the text with a mark of nMark characters, which are no part
// of the end; empty when it has no end.
std::string_view SkipBehind(std::string_view text, size_t nMark, std::string_view end)
{
    const size_t nAt = text.find(end, nMark);
    return nAt == std::string_view::npos ? std::string_view() : text.substr(nAt + end.size());
}

// Consumes a tag, from behind its '<'; false when it has too many attributes. A value ends at its own quote,
// whatever stands in it.
bool SkipTag(std::string_view& text)
{
    for (size_t nAttributes = 0; nAttributes <= MAX_ATTRIBUTES; ++nAttributes) {
        const size_t nAt = text.find_first_of("'\">");
        if (nAt == std::string_view::npos || text[nAt] == '>') {
            text.remove_prefix(std::min(nAt, text.size()));
            return true;
        }
        text = SkipBehind(text.substr(nAt), 1, text.substr(nAt, 1));
    }
    return false;
}

bool HasTooManyAttributes(std::string_view text)
{
    if (static_cast<size_t>(std::count(text.begin(), text.end(), '=')) <= MAX_ATTRIBUTES) {
        return false; // the usual case, and quick to tell
    }
    for (size_t nAt = text.find('<'); nAt != std::string_view::npos; nAt = text.find('<')) {
        text.remove_prefix(nAt + 1);
        if (text.starts_with("!--")) {
            text = SkipBehind(text, 3, "-->");
        } else if (text.starts_with("![CDATA[")) {
            text = SkipBehind(text, 8, "]]>");
        } else if (text.starts_with("?")) {
            text = SkipBehind(text, 1, "?>");
        } else if (text.starts_with("!")) {
            text = SkipBehind(text, 1, ">");
        } else if (!SkipTag(text)) {
            return true;
        }
    }
    return false;
}

// Likewise character references without an end, for each of which the parser searches the rest of the text; a
// few may stand in texts that are no references.
bool HasTooManyEndlessReferences(std::string_view text)
{
    constexpr size_t MAX_ENDLESS = 64;
    constexpr size_t MAX_REFERENCE_LEN = 16; // the longest is "&#x10FFFF;", some write zeros in front
    size_t nEndless = 0;
    for (size_t nAt = text.find("&#"); nAt != std::string_view::npos; nAt = text.find("&#", nAt + 2)) {
        if (text.substr(nAt, MAX_REFERENCE_LEN).find(';') == std::string_view::npos) {
            ++nEndless;
        }
    }
    return nEndless > MAX_ENDLESS;
}

} // namespace

CVTXMLParse::CVTXMLParse() : m_pDocument(std::make_unique<tinyxml2::XMLDocument>()) {}

CVTXMLParse::CVTXMLParse(const char* pText, size_t nLen) : CVTXMLParse() { Parse(pText, nLen); }

CVTXMLParse::~CVTXMLParse() = default;

bool CVTXMLParse::Parse(const char* pText, size_t nLen)
{
    const std::string_view text(pText, pText == nullptr ? 0 : strnlen(pText, nLen));
    if (IsTooLarge(text) || HasTooManyAttributes(text) || HasTooManyEndlessReferences(text)) {
        m_pDocument->Clear();
        m_bParsed = false;
        return false;
    }
    m_bParsed =
        m_pDocument->Parse(pText, nLen) == tinyxml2::XML_SUCCESS && m_pDocument->RootElement() != nullptr;
    return m_bParsed;
}

CVTXMLParse::Item CVTXMLParse::GetFirstItem(const char* szPath) const
{
    return Descend(m_pDocument.get(), szPath);
}

CVTXMLParse::Item CVTXMLParse::GetFirstItem(Item item, const char* szPath) const
{
    return Descend(item, szPath);
}

CVTXMLParse::Item CVTXMLParse::GetFirstChild(Item item) const
{
    return item == nullptr ? nullptr : item->FirstChildElement();
}

CVTXMLParse::Item CVTXMLParse::GetNextSiblingItem(Item item, const char* szName) const
{
    return item == nullptr ? nullptr : item->NextSiblingElement(szName);
}

int32_t CVTXMLParse::GetValue_i32(Item item, const char* szPath) const
{
    const char* szText = GetText(item, szPath);
    const auto digits = ReadDigits(szText);
    return static_cast<int32_t>(digits ? *digits : std::strtol(szText, nullptr, 10));
}

uint32_t CVTXMLParse::GetValueDWORD(Item item, const char* szPath) const
{
    const char* szText = GetText(item, szPath);
    const auto digits = ReadDigits(szText);
    return static_cast<uint32_t>(digits ? *digits : std::strtoul(szText, nullptr, 10));
}

const char* CVTXMLParse::GetText(Item item, const char* szPath) const
{
    return TextOf(*szPath == '\0' ? item : Descend(item, szPath));
}
