#include "MarkupSTL.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "MarkupSTLToken.h"

namespace {

struct Reference {
    char cChar;
    std::string_view strText;
};

constexpr Reference kReferences[] = {
    {'<', "&lt;"}, {'&', "&amp;"}, {'>', "&gt;"}, {'\'', "&apos;"}, {'"', "&quot;"},
};
constexpr size_t kMaxDigits = 7;

bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' || c == ':'; }

bool IsNameChar(char c)
{
    return IsLetter(c) || (c >= '0' && c <= '9') || c == '-' || c == '.' ||
           static_cast<unsigned char>(c) >= 0x80;
}

bool StartsReference(std::string_view strText)
{
    if (strText.size() < 2 || (strText[1] != '#' && !IsLetter(strText[1]))) {
        return false;
    }
    const auto it = std::find_if_not(strText.begin() + 2, strText.end(), IsNameChar);
    return it != strText.end() && *it == ';';
}

// The reference for a character; null when the character is written as is.
const Reference* FindEscape(char c, int nFlags)
{
    const bool bQuotes = (nFlags & CMarkupSTL::MNF_ESCAPEQUOTES) != 0;
    switch (c) {
    case '<':
        return &kReferences[0];
    case '&':
        return &kReferences[1];
    case '>':
        return &kReferences[2];
    case '\'':
        return bQuotes ? &kReferences[3] : nullptr;
    case '"':
        return bQuotes ? &kReferences[4] : nullptr;
    default:
        return nullptr;
    }
}

// True when nothing in the text needs a reference. One search for each character is much faster on long texts
// than a loop over their bytes.
bool IsPlain(std::string_view strText, int nFlags)
{
    const auto has = [strText](char c) { return strText.find(c) != std::string_view::npos; };
    return std::none_of(std::begin(kReferences), std::end(kReferences), [&](const Reference& reference) {
        return FindEscape(reference.cChar, nFlags) != nullptr && has(reference.cChar);
    });
}

void AppendEscaped(std::string& strOut, std::string_view strText, int nFlags)
{
    for (size_t n = 0; n < strText.size(); ++n) {
        const Reference* pEscape = FindEscape(strText[n], nFlags);
        const bool bKeep = (nFlags & CMarkupSTL::MNF_WITHREFS) != 0 && strText[n] == '&';
        if (pEscape == nullptr || (bKeep && StartsReference(strText.substr(n)))) {
            strOut += strText[n];
        } else {
            strOut += pEscape->strText;
        }
    }
}

void AppendCData(std::string& strOut, std::string_view strData)
{
    strOut += "<![CDATA[";
    for (size_t nEnd; (nEnd = strData.find("]]>")) != std::string_view::npos;
         strData.remove_prefix(nEnd + 2)) {
        strOut.append(strData.substr(0, nEnd)).append("]]]]><![CDATA[");
    }
    strOut.append(strData).append("]]>");
}

// Always at most three bytes: code points from 0x10000 up lose their high bits, as the decoder expects.
void AppendUtf8(std::string& strOut, unsigned int nCode)
{
    const auto byte = [](unsigned int n) { return static_cast<char>(n); };
    if (nCode < 0x80) {
        strOut += byte(nCode);
    } else if (nCode < 0x800) {
        strOut += {byte(0xC0 | (nCode >> 6)), byte(0x80 | (nCode & 0x3F))};
    } else {
        strOut += {byte(0xE0 | ((nCode >> 12) & 0x0F)), byte(0x80 | ((nCode >> 6) & 0x3F)),
                   byte(0x80 | (nCode & 0x3F))};
    }
}

struct NumericReference {
    unsigned int nCode;
    size_t nLength;
};

// strText begins with "&#".
std::optional<NumericReference> ReadNumericReference(std::string_view strText)
{
    const bool bHex = strText.size() > 2 && strText[2] == 'x';
    const size_t nDigits = bHex ? 3 : 2;
    const std::string_view strDigits = strText.substr(nDigits, kMaxDigits);
    NumericReference ref{};
    const auto [pEnd, error] =
        std::from_chars(strDigits.data(), strDigits.data() + strDigits.size(), ref.nCode, bHex ? 16 : 10);
    const size_t nEnd = static_cast<size_t>(pEnd - strText.data());
    if (error != std::errc() || nEnd >= strText.size() || strText[nEnd] != ';') {
        return std::nullopt;
    }
    ref.nLength = nEnd + 1;
    return ref;
}

// Appends what the "&" at the start of strText stands for; returns the length consumed.
size_t AppendReference(std::string& strOut, std::string_view strText)
{
    if (strText.starts_with("&#")) {
        const auto ref = ReadNumericReference(strText);
        if (ref) {
            AppendUtf8(strOut, ref->nCode);
        }
        if (ref && ref->nCode != 0) {
            return ref->nLength;
        }
        // A zero character is followed by its own reference, as peers expect.
    } else {
        for (const Reference& ref : kReferences) {
            if (strText.starts_with(ref.strText)) {
                strOut += ref.cChar;
                return ref.strText.size();
            }
        }
    }
    strOut += '&';
    return 1;
}

void AppendUnescaped(std::string& strOut, std::string_view strText)
{
    while (!strText.empty()) {
        const size_t nPlain = std::min(strText.find('&'), strText.size());
        strOut += strText.substr(0, nPlain);
        strText.remove_prefix(nPlain);
        if (!strText.empty()) {
            strText.remove_prefix(AppendReference(strOut, strText));
        }
    }
}

std::string Unescaped(std::string_view strText)
{
    std::string strOut;
    AppendUnescaped(strOut, strText);
    return strOut;
}

std::string_view CDataContent(std::string_view strSection)
{
    constexpr std::string_view kOpen = "<![CDATA[";
    constexpr std::string_view kClose = "]]>";
    return strSection.substr(kOpen.size(), strSection.size() - kOpen.size() - kClose.size());
}

} // namespace

std::string CMarkupSTL::EscapeText(const char* szText, int nFlags)
{
    std::string strOut;
    AppendEscaped(strOut, szText == nullptr ? "" : szText, nFlags);
    return strOut;
}

std::string CMarkupSTL::UnescapeText(const char* szText, int nTextLength)
{
    if (szText == nullptr) {
        return {};
    }
    return Unescaped(nTextLength < 0 ? std::string_view(szText)
                                     : std::string_view(szText, static_cast<size_t>(nTextLength)));
}

// The encoded form of strData: strData itself when nothing changes, else strBuffer.
std::string_view CMarkupSTL::x_EncodeData(std::string_view strData, int nFlags, std::string& strBuffer)
{
    if ((nFlags & MNF_WITHCDATA) != 0) {
        AppendCData(strBuffer, strData);
    } else if (IsPlain(strData, nFlags)) {
        return strData;
    } else {
        AppendEscaped(strBuffer, strData, nFlags);
    }
    return strBuffer;
}

std::string CMarkupSTL::x_GetData(int iPos) const
{
    const ElemPos& elem = m_aPos[iPos];
    if (elem.iElemChild != 0 || elem.EndTagLen() == 0) {
        return {};
    }
    const std::string_view strUpToEnd =
        std::string_view(m_strDoc).substr(0, static_cast<size_t>(elem.EndContent()));
    TokenPos token(strUpToEnd, elem.StartContent());
    if (token.Rest().find('<') == std::string_view::npos) {
        return Unescaped(token.Rest());
    }
    std::string strData;
    while (!token.AtEnd()) {
        NodePos node;
        x_ParseNode(token, node);
        const std::string_view strNode =
            strUpToEnd.substr(static_cast<size_t>(node.nStart), static_cast<size_t>(node.nLength));
        if (node.nNodeType == MNT_TEXT) {
            AppendUnescaped(strData, strNode);
        } else if (node.nNodeType == MNT_CDATA_SECTION) {
            strData += CDataContent(strNode);
        }
    }
    return strData;
}
