#include "SysHelper.h"

#include <cstdio>

namespace {

constexpr size_t GUID_TEXT_SIZE = 39; // with the terminating zero

} // namespace

std::string CSysHelper::GuidToString(const GUID& guid)
{
    char szText[GUID_TEXT_SIZE];
    GuidToString(guid, szText, sizeof(szText));
    return szText;
}

bool CSysHelper::GuidToString(const GUID& guid, char* szOut, size_t nSize)
{
    const auto& d = guid.Data4;
    const int n =
        std::snprintf(szOut, nSize, "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}", guid.Data1,
                      guid.Data2, guid.Data3, d[0], d[1], d[2], d[3], d[4], d[5], d[6], d[7]);
    return n >= 0 && static_cast<size_t>(n) < nSize;
}
