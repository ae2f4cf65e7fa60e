#include "SysHelper.h"

namespace {

// All digits of a number, leading zeros included; returns their end.
template <class Number>
char* PutHex(char* p, Number n)
{
    for (int nShift = 8 * sizeof(Number) - 4; nShift >= 0; nShift -= 4) {
        *p++ = "0123456789ABCDEF"[(n >> nShift) & 0xF];
    }
    return p;
}

} // namespace

std::string CSysHelper::GuidToString(const GUID& guid)
{
    char szText[] = "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}";
    char* p = PutHex(szText + 1, guid.Data1);
    p = PutHex(p + 1, guid.Data2);
    p = PutHex(p + 1, guid.Data3);
    for (int i = 0; i < 8; ++i) {
        const bool bBehindDash = i == 0 || i == 2;
        p = PutHex(bBehindDash ? p + 1 : p, guid.Data4[i]);
    }
    return szText;
}

bool CSysHelper::GuidToString(const GUID& guid, char* szOut, size_t nSize)
{
    const std::string text = GuidToString(guid);
    if (nSize > 0) {
        szOut[text.copy(szOut, nSize - 1)] = '\0';
    }
    return text.size() < nSize;
}
