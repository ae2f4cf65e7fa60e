#pragma once
// What a decoder reports about itself.

#include <cstddef>

#include "Encoding/TvwRecord.h"
#include "HostTypes.h"

namespace ORVA2_DECODER_TVW {

// An image that travels whole; the texts are zero-terminated inside their fields. The spelling Decoer is the
// host's.
struct S_Decoder_Baseinfo_Item {
    GUID _guidDecoer{}; // stays null
    char _name[64] = {};
    tint32 _model = 0;
    char _smodelDecs[64] = {}; // the model's name
    char _mac[64] = {};
    char _sSoftVer[64] = {};
    char _sBuildDate[64] = {};
    char _sKernelVer[64] = {};
    char _sDataVersion[64] = {};
};
static_assert(sizeof(S_Decoder_Baseinfo_Item) == 468);
static_assert(offsetof(S_Decoder_Baseinfo_Item, _name) == 16);
static_assert(offsetof(S_Decoder_Baseinfo_Item, _model) == 80);
static_assert(offsetof(S_Decoder_Baseinfo_Item, _smodelDecs) == 84);
static_assert(offsetof(S_Decoder_Baseinfo_Item, _mac) == 148);
static_assert(offsetof(S_Decoder_Baseinfo_Item, _sSoftVer) == 212);
static_assert(offsetof(S_Decoder_Baseinfo_Item, _sBuildDate) == 276);
static_assert(offsetof(S_Decoder_Baseinfo_Item, _sKernelVer) == 340);
static_assert(offsetof(S_Decoder_Baseinfo_Item, _sDataVersion) == 404);

} // namespace ORVA2_DECODER_TVW
