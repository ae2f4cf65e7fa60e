#pragma once
// Video sources and the two records that carry them.

#include <cstdint>
#include <string>
#include <vector>

#include "Commands/Records/Bytes.h"

namespace standin_host {

// One live or recorded stream. Types, modes and times are the decoder's own numbers, passed on unchanged.
struct Media {
    int64_t type = 0;
    int64_t requestMode = 0;
    std::string address; // at most kMaxSourceAddress bytes
    int64_t port = 0;
    int32_t channelNumber = -1; // negative: none
    GUID channel{};             // all zero: none
    std::string user;           // at most kMaxSourceCredential bytes, like the password
    std::string password;
    bool passwordMissing = false; // there is a user, and no password was given
    int64_t streamType = 0;
    int64_t recordMask = 0; // this and selector: only with a single source
    int64_t selector = 0;
    uint64_t begin = 0;
    uint64_t end = 0;
};

inline constexpr std::size_t kMaxSourceAddress = 31;
inline constexpr std::size_t kMaxSourceCredential = 255;

// The request mode in which a decoder looks for a numeric channel.
inline constexpr int64_t kNumericChannelMode = 6;

// Reads "3" or a GUID, and sets the matching request mode. False for anything else.
bool ParseChannel(const std::string& text, Media& media);

// A source for one sub-window.
Record PlayMediaRecord(int32_t window, int32_t index, const Media& media);

// A whole wall.
struct WallSubWindow {
    int64_t index;
    int64_t osdId;
    Media media; // without a channel: the sub-window shows nothing
};

struct WallWindow {
    int64_t id;
    int64_t layer;
    int64_t mode;
    int64_t x, y, width, height;
    std::vector<WallSubWindow> subWindows;
};

Record WallRecord(const std::vector<WallWindow>& windows);

} // namespace standin_host
