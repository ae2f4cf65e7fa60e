#include "VTXMLParse.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <tinyxml2.h>

namespace {

bool HasName(const tinyxml2::XMLNode& node, std::string_view name)
{
    const char* szName = node.Value();
    return std::strncmp(szName, name.data(), name.size()) == 0 && szName[name.size()] == '\0';
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

const char* TextOf(CVTXMLParse::Item item)
{
    const char* szText = item == nullptr ? nullptr : item->GetText();
    return szText == nullptr ? "" : szText;
}

} // namespace

CVTXMLParse::CVTXMLParse() : m_pDocument(std::make_unique<tinyxml2::XMLDocument>()) {}

CVTXMLParse::CVTXMLParse(const char* pText, size_t nLen) : CVTXMLParse() { Parse(pText, nLen); }

CVTXMLParse::~CVTXMLParse() = default;

bool CVTXMLParse::Parse(const char* pText, size_t nLen)
{
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
    return static_cast<int32_t>(std::strtol(TextOf(Descend(item, szPath)), nullptr, 10));
}

uint32_t CVTXMLParse::GetValueDWORD(Item item, const char* szPath) const
{
    return static_cast<uint32_t>(std::strtoul(TextOf(Descend(item, szPath)), nullptr, 10));
}

std::string CVTXMLParse::GetValueStr(Item item, const char* szPath) const
{
    return TextOf(Descend(item, szPath));
}
