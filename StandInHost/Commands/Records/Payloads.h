#pragma once
// The records that the host composes for its commands. Numbers are given wide, but fit their fields: who asks
// for a record has checked them.

#include <cstdint>
#include <string>
#include <vector>

#include "Commands/Records/Bytes.h"

namespace standin_host {

// --- canvas windows, in wall coordinates ---

// A window to create or to split.
struct SWindow {
    uint32_t nID;
    uint32_t nX, nY, nWidth, nHeight;
    uint32_t nLayer;
    std::vector<uint32_t> osdIds; // one for each sub-window; their number is the split mode
};

// A window's new place.
struct SWindowMove {
    int32_t nID;
    int32_t nX, nY, nWidth, nHeight;
};

SRecord CreateRecord(const std::vector<SWindow>& windows);
SRecord MoveRecord(const std::vector<SWindowMove>& moves);
SRecord DeleteRecord(const std::vector<uint32_t>& ids);
SRecord RaiseRecord(uint32_t nID);

// --- layout of the wall ---

// A decoder output and its place in the grid of screens.
struct SScreen {
    uint32_t nID;
    uint32_t nX, nY;
};

SRecord LayoutRecord(uint32_t nRows, uint32_t nColumns, const std::vector<SScreen>& screens);

// --- channel groups ---

struct SChannelGroup {
    int32_t nID;
    std::string strName;     // at most kMaxGroupName bytes
    std::string strChannels; // at most kMaxGroupChannels bytes, in the decoder's own form
    uint32_t nChannels;
    uint32_t nInterval;
};

inline constexpr std::size_t kMaxGroupName = 255;
inline constexpr std::size_t kMaxGroupChannels = 15;

SRecord GroupRecord(const SChannelGroup& group);
SRecord DeleteGroupsRecord(const std::vector<int32_t>& ids);
SRecord GetGroupRecord(int32_t nID); // 0: all groups

// --- sub-windows, each with what a command says of it ---

struct SSubWindow {
    int64_t nIndex;
    int64_t nFirst;  // the record's first number behind the index
    int64_t nSecond; // and its second one
};

struct SSubWindows {
    int64_t nWindow;
    std::vector<SSubWindow> subWindows;
};

// More would not fit the narrowest count.
inline constexpr std::size_t kMaxSubWindows = 0xFFFF;

SRecord StopMediaRecord(const std::vector<SSubWindows>& windows);
SRecord PlaybackRecord(const std::vector<SSubWindows>& windows); // control type, control value
SRecord AudioRecord(const std::vector<SSubWindows>& windows);    // channel
SRecord PollingRecord(const std::vector<SSubWindows>& windows);  // channel group
SRecord BorderRecord(const std::vector<SSubWindows>& windows);   // 1 to draw the border

// --- display switches ---

SRecord ZoomRecord(uint32_t nWindow, uint16_t nIndex, bool bZoom);
SRecord WindowConfigRecord(bool bBorders, bool bWindowIds);

// --- around the records ---

// The record behind the head of the option commands: option type and record length.
SRecord OptionPayload(uint32_t nOptType, const SRecord& record);

// Longest account name and password, in bytes: the record's fields hold a terminating zero too.
inline constexpr std::size_t kMaxCredential = 63;

SRecord LoginRecord(const std::string& strUser, const std::string& strPassword);

} // namespace standin_host
