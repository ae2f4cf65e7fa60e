#pragma once
// All records of the decoder-side model, and the one that belongs to no family.

#include <cstddef>

#include "DecodeCommCanvas.h"
#include "DecodeCommDeviceInfo.h"
#include "DecodeCommDisplay.h"
#include "DecodeCommPlayback.h"
#include "HostTypes.h"

namespace ORVA2_DECODER_TVW {

// A node of the host by identifier and name: an image that travels whole. No command to this decoder carries
// one.
struct S_GuidUnt {
    GUID _guid{};
    char _name[128] = {}; // zero-terminated
    union {
        tuint32 _nData = 0; // its meaning is the host's
    };
};
static_assert(sizeof(S_GuidUnt) == 148);
static_assert(offsetof(S_GuidUnt, _name) == 16);
static_assert(offsetof(S_GuidUnt, _nData) == 144);

} // namespace ORVA2_DECODER_TVW
