#pragma once
// A decoder's part on the wall. The spellings identidy and devicename are the decoder's.

#include <string>

#include "Encoding/TvwRecord.h"
#include "HostTypes.h"

namespace ORVA2_CLIENT_TVW {

// Only ever an answer to the host, so it is written and not read.
struct S_MTvw_Wall_Basic_Config {
    GUID _guidwall{}; // stays null
    tuint32 _identidy = 0;
    tuint32 _runmode = 0;
    std::string _devicename; // behind the rest, without a terminating zero

    unsigned int GetLength() const;
    // Encodes into pData, which holds at least GetLength() bytes. Returns the bytes written, 0 for null.
    unsigned int GetData(char*& pData) const;
    std::string Encode() const;
};

} // namespace ORVA2_CLIENT_TVW
