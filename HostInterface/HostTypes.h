#pragma once
// Plain types that cross the boundary between host and plug-in.

#include <cstdint>

using BYTE = unsigned char;

// Identifier of a node, a wall or a plan: 16 bytes, the three integers little-endian.
struct _GUID {
    uint32_t Data1;
    uint16_t Data2;
    uint16_t Data3;
    uint8_t Data4[8];
};
using GUID = _GUID;
static_assert(sizeof(_GUID) == 16);
