#include "MarkupSTLToken.h"

#include <algorithm>
#include <array>
#include <strings.h>

namespace {

using CharSet = std::array<bool, 256>;

constexpr CharSet MakeSet(std::string_view strChars)
{
    CharSet set{};
    for (const char c : strChars) {
        set[static_cast<unsigned char>(c)] = true;
    }
    return set;
}

constexpr CharSet kNameEnds = MakeSet(" \t\n\r<>=\\/?!");

bool EndsName(char c) { return kNameEnds[static_cast<unsigned char>(c)]; }

bool IsSameName(std::string_view a, std::string_view b, bool bIgnoreCase)
{
    return bIgnoreCase ? a.size() == b.size() && strncasecmp(a.data(), b.data(), a.size()) == 0 : a == b;
}

} // namespace

bool TokenPos::FindAny()
{
    nPreSpaceStart = nNext;
    while (!AtEnd() && IsSpace(Peek())) {
        ++nNext;
    }
    nPreSpaceLength = nNext - nPreSpaceStart;
    return !AtEnd();
}

bool TokenPos::FindName()
{
    nL = nNext;
    const std::string_view strRest = Rest();
    nNext += static_cast<int>(std::find_if(strRest.begin(), strRest.end(), EndsName) - strRest.begin());
    nR = nNext - 1;
    return nL <= nR;
}

bool TokenPos::FindPast(std::string_view strText)
{
    const size_t nFound = szDoc.find(strText, static_cast<size_t>(nNext));
    nNext = nFound == std::string_view::npos ? Length() : static_cast<int>(nFound + strText.size());
    return nFound != std::string_view::npos;
}

bool TokenPos::FindTagEnd()
{
    bool bValue = false; // a quotation mark hides a ">" only after "="
    while (!AtEnd() && Peek() != '>') {
        const char c = Peek();
        ++nNext;
        if (bValue && (c == '"' || c == '\'')) {
            FindPast(std::string_view(&c, 1));
            bValue = false;
        } else if (!IsSpace(c)) {
            bValue = c == '=';
        }
    }
    return !AtEnd();
}

bool TokenPos::Match(std::string_view strName) const
{
    const std::string_view strTag = GetToken();
    const bool bIgnoreCase = (nTokenFlags & IGNORE_CASE) != 0;
    if (!IsSameName(strTag, strName.substr(0, strTag.size()), bIgnoreCase)) {
        return false;
    }
    return strName.size() == strTag.size() ||
           std::string_view(" =/[]").find(strName[strTag.size()]) != std::string_view::npos;
}
