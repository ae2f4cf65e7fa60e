#pragma once
// Video sources and the two records that carry them.

#include <cstdint>
#include <string>
#include <vector>

#include "Commands/Records/Bytes.h"

namespace standin_host {

// One live or recorded stream. Types, modes and times are the decoder's own numbers and are passed on
// unchanged.
struct SMedia {
    int64_t nType = 0;
    int64_t nRequestMode = 0;
    std::string strAddress; // at most kMaxSourceAddress bytes
    int64_t nPort = 0;
    int32_t nChannel = -1; // negative: none
    GUID channel{};        // all zero: none
    std::string strUser;   // at most kMaxSourceCredential bytes, as the password
    std::string strPassword;
    int64_t nStreamType = 0;
    int64_t nRecordMask = 0; // the three below travel with a single source only
    int64_t nSelector = 0;
    uint64_t nBegin = 0;
    uint64_t nEnd = 0;
};

inline constexpr std::size_t kMaxSourceAddress = 31;
inline constexpr std::size_t kMaxSourceCredential = 255;

// In this request mode a decoder looks for a numeric channel.
inline constexpr int64_t kNumericChannelMode = 6;

// "3" or a GUID, and the request mode that goes with it. False for anything else.
bool ParseChannel(const std::string& strText, SMedia& media);

// A source for one sub-window.
SRecord PlayMediaRecord(int32_t nWindow, int32_t nIndex, const SMedia& media);

// A whole wall.
struct SWallSubWindow {
    int64_t nIndex;
    int64_t nOsdId;
    SMedia media; // without a channel: the sub-window shows nothing
};

struct SWallWindow {
    int64_t nID;
    int64_t nLayer;
    int64_t nMode;
    int64_t nX, nY, nWidth, nHeight;
    std::vector<SWallSubWindow> subWindows;
};

SRecord WallRecord(const std::vector<SWallWindow>& windows);

} // namespace standin_host
