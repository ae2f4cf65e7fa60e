#include "VTXMLParse.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string_view>
#include <tinyxml2.h>

#include "XmlCost.h"

namespace {

bool HasName(const tinyxml2::XMLElement& element, std::string_view name)
{
    const char* szName = element.Value();
    return !name.empty() && *szName == name.front() && // most names differ here
           std::strncmp(szName, name.data(), name.size()) == 0 && szName[name.size()] == '\0';
}

CVTXMLParse::Item FindChild(const tinyxml2::XMLNode& node, std::string_view name)
{
    for (const auto* pChild = node.FirstChild(); pChild != nullptr; pChild = pChild->NextSibling()) {
        if (const CVTXMLParse::Item element = pChild->ToElement(); element && HasName(*element, name)) {
            return element;
        }
    }
    return nullptr;
}

CVTXMLParse::Item Descend(const tinyxml2::XMLNode* pNode, std::string_view path)
{
    while (pNode != nullptr && !path.empty()) {
        const std::string_view name = path.substr(0, path.find('/'));
        path.remove_prefix(std::min(path.size(), name.size() + 1));
        pNode = FindChild(*pNode, name);
    }
    return pNode == nullptr ? nullptr : pNode->ToElement();
}

// A number of the usual few digits; anything else is left to the library's functions, which take much longer.
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

// Whether a text of this cost leaves its memory to the next one. A smaller one has little to leave, and no
// wall is large enough for a larger one.
bool IsKept(uint64_t nCost)
{
    constexpr uint64_t KEPT_FROM = uint64_t{128} << 10U;
    constexpr uint64_t KEPT_UP_TO = uint64_t{16} << 20U;
    return nCost >= KEPT_FROM && nCost <= KEPT_UP_TO;
}

} // namespace

CVTXMLParse::CVTXMLParse() = default;

CVTXMLParse::CVTXMLParse(const char* pText, size_t nLen, size_t nBeside) { Parse(pText, nLen, nBeside); }

CVTXMLParse::~CVTXMLParse() = default;

bool CVTXMLParse::Parse(const char* pText, size_t nLen, size_t nBeside)
{
    std::string_view text(pText, pText == nullptr ? 0 : nLen);
    text = text.substr(0, text.find('\0')); // the library would copy what it does not read
    const uint64_t nCost = xml_cost::Estimate(text, nLen, nBeside);
    m_bParsed = false;
    if (!IsKept(nCost)) {
        m_pDocument.reset();
    }
    if (nCost > xml_cost::LIMIT) {
        return false;
    }
    if (!m_pDocument) {
        m_pDocument = std::make_unique<tinyxml2::XMLDocument>();
    }
    m_nSpare = xml_cost::LIMIT - nCost;
    m_bParsed = m_pDocument->Parse(text.data(), text.size()) == tinyxml2::XML_SUCCESS &&
                m_pDocument->RootElement() != nullptr;
    return m_bParsed;
}

bool CVTXMLParse::Clear()
{
    const bool bKept = m_bParsed && IsKept(xml_cost::LIMIT - m_nSpare);
    m_bParsed = false;
    if (bKept) {
        m_pDocument->Clear();
    } else {
        m_pDocument.reset();
    }
    return bKept;
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
