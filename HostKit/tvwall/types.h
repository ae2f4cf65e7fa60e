#pragma once
// What commands and answers are about. Numbers are wide enough for every record; each command says which fit
// its own. What types, modes, streams, masks, intervals and times mean is between host and decoder.

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "HostTypes.h"

namespace tvwall {

// The number of one thing among its like; the kinds do not mix.
template <class Kind>
struct Id {
    std::int64_t number = 0;

    friend bool operator==(Id, Id) = default;
    friend auto operator<=>(Id, Id) = default;
};
using WindowId = Id<struct WindowKind>;
using SubWindowIndex = Id<struct SubWindowKind>; // inside its window, from 0
using OutputId = Id<struct OutputKind>;          // a video output of the decoder
using ChannelNumber = Id<struct ChannelKind>;    // an input channel
using GroupId = Id<struct GroupKind>;            // a channel group
using OsdId = Id<struct OsdKind>;                // an on-screen display

// "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}" in capitals.
std::string GuidText(const GUID& guid);

// --- the wall ---

// A position in the grid of screens, from 0 at the upper left.
struct ScreenPlace {
    std::int64_t column = 0;
    std::int64_t row = 0;
};

// A screen and the output that feeds it.
struct Screen {
    OutputId output{};
    ScreenPlace place{};
    std::string name{}; // answers only: at most 256 bytes
};

// The grid of screens.
struct Layout {
    std::int64_t rows = 0;
    std::int64_t columns = 0;
    std::vector<Screen> screens{}; // those with an output
};

// In wall coordinates: pixels of the whole wall from its upper left corner.
struct Rect {
    std::int64_t x = 0;
    std::int64_t y = 0;
    std::int64_t width = 0;
    std::int64_t height = 0;
};

// A window to create or to split.
struct Window {
    WindowId id{};
    Rect rect{};
    std::vector<OsdId> osdIds{}; // one for each sub-window; their number is the split mode
    std::int64_t layer = 0;      // of which the decoder is not told
};

// A window's new rectangle.
struct MovedWindow {
    WindowId id{};
    Rect rect{};
};

// One window with what a command says of its sub-windows.
template <class SubWindow>
struct InWindow {
    WindowId window{};
    std::vector<SubWindow> subWindows{};
};

// --- video ---

// Which channel of its device a source is: none, a number from 0, or a GUID.
using SourceChannel = std::variant<std::monostate, ChannelNumber, GUID>;

// One live or recorded stream. The decoder pulls it from its address with these credentials; it may refuse
// empty ones.
struct Source {
    std::string address{}; // at most 32 bytes
    std::int64_t port = 0;
    SourceChannel channel{};
    std::string user{}; // at most 256 bytes, as the password
    std::string password{};
    std::int64_t type = 0;
    std::optional<std::int64_t> requestMode{}; // unless given, 6 with a channel number and 0 without
    std::int64_t streamType = 0;
    std::uint64_t begin = 0; // of recorded video
    std::uint64_t end = 0;
    std::int64_t recordMask = 0; // likewise; this and the selector not in a whole wall
    std::int64_t selector = 0;
};

struct SubWindowMedia {
    SubWindowIndex index{};
    std::vector<Source> sources{};
};

// Control of recorded video.
struct SubWindowPlayback {
    SubWindowIndex index{};
    std::int64_t type = 0;
    std::int64_t value = 0;
};

struct SubWindowSound {
    SubWindowIndex index{};
    ChannelNumber channel{}; // whose sound is heard
};

struct SubWindowPolling {
    SubWindowIndex index{};
    GroupId group{}; // to cycle through
};

struct SubWindowBorder {
    SubWindowIndex index{};
    bool drawn = false;
};

// --- a whole wall at once ---

struct WallSubWindow {
    SubWindowIndex index{};
    OsdId osdId{};
    std::optional<Source> source{}; // nothing is shown without
};

struct WallWindow {
    WindowId id{};
    Rect rect{};
    std::vector<WallSubWindow> subWindows{};
    std::int64_t layer = 0;             // stacking order
    std::optional<std::int64_t> mode{}; // split mode: unless given, the number of sub-windows
};

// --- channel groups ---

struct ChannelGroup {
    GroupId id{};
    std::string name{};            // at most 256 bytes
    std::string channels{};        // in the decoder's notation, at most 16 bytes
    std::int64_t channelCount = 0; // 0 in answers
    std::int64_t interval = 0;     // from channel to channel
};

// The wall's and the decoder's identifiers, which are the host's own.
struct SoundOwner {
    GUID wall{};
    GUID decoder{};
};

} // namespace tvwall
