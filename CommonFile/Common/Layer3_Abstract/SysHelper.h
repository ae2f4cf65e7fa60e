#pragma once

#include <cstddef>
#include <string>

#include "HostTypes.h"

// Text forms of the host's values.
class CSysHelper {
public:
    // "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}", 38 upper-case characters.
    static std::string GuidToString(const GUID& guid);
    // The same text, zero-terminated, in nSize bytes at szOut. False, with the text cut, below 39 bytes.
    static bool GuidToString(const GUID& guid, char* szOut, size_t nSize);
};
