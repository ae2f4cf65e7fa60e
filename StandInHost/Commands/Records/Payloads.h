#pragma once
// The records that the host composes for its commands. Numbers are passed in wide types, but the caller has
// checked that they fit their fields.

#include <cstdint>
#include <string>
#include <vector>

#include "Commands/Records/Bytes.h"

namespace standin_host {

// --- canvas windows, in wall coordinates ---

// A window to create or to split.
struct Window {
    uint32_t id;
    uint32_t x, y, width, height;
    uint32_t layer;
    std::vector<uint32_t> osdIds; // one for each sub-window; their number is the split mode
};

// A window's new place.
struct WindowMove {
    int32_t id;
    int32_t x, y, width, height;
};

Record CreateRecord(const std::vector<Window>& windows);
Record MoveRecord(const std::vector<WindowMove>& moves);
Record DeleteRecord(const std::vector<uint32_t>& ids);
Record RaiseRecord(uint32_t id);

// --- layout of the wall ---

// A decoder output and its place in the grid of screens.
struct Screen {
    uint32_t id;
    uint32_t x, y;
};

Record LayoutRecord(uint32_t rows, uint32_t columns, const std::vector<Screen>& screens);

// --- channel groups ---

struct ChannelGroup {
    int32_t id;
    std::string name;        // at most kMaxGroupName bytes
    std::string channelList; // at most kMaxGroupChannels bytes, in the decoder's own form
    uint32_t channelCount;
    uint32_t interval;
};

inline constexpr std::size_t kMaxGroupName = 255;
inline constexpr std::size_t kMaxGroupChannels = 15;

Record GroupRecord(const ChannelGroup& group);
Record DeleteGroupsRecord(const std::vector<int32_t>& ids);
Record GetGroupRecord(int32_t id); // 0: all groups

// --- sub-windows, each with its values for a command ---

struct SubWindow {
    int64_t index;
    int64_t first;  // the record's first number after the index
    int64_t second; // the record's second number after the index
};

struct SubWindows {
    int64_t window;
    std::vector<SubWindow> subWindows;
};

// The narrowest count holds no more.
inline constexpr std::size_t kMaxSubWindows = 0xFFFF;

Record StopMediaRecord(const std::vector<SubWindows>& windows);
Record PlaybackRecord(const std::vector<SubWindows>& windows); // control type, control value
Record AudioRecord(const std::vector<SubWindows>& windows);    // channel
Record PollingRecord(const std::vector<SubWindows>& windows);  // channel group
Record BorderRecord(const std::vector<SubWindows>& windows);   // 1 to draw the border

// --- display switches ---

Record ZoomRecord(uint32_t window, uint16_t index, bool zoom);
Record WindowConfigRecord(bool borders, bool windowIds);

// --- framing of the records ---

// The record after the head of the option commands: option type and record length.
Record OptionPayload(uint32_t optType, const Record& record);

// Longest account name and password, in bytes: the record's fields hold a terminating zero too.
inline constexpr std::size_t kMaxCredential = 63;

Record LoginRecord(const std::string& user, const std::string& password);

} // namespace standin_host
