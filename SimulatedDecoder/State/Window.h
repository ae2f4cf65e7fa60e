#pragma once
// What lies on the wall: windows, their sub-windows and what those show.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace simulated_decoder {

// In wall coordinates: pixels from the wall's upper left corner. The link carries 32 bits each, so that sums
// and products with the size of a wall do not overflow.
struct Rect {
    std::int64_t x = 0;
    std::int64_t y = 0;
    std::int64_t width = 0;
    std::int64_t height = 0;
};

// A source that a sub-window plays, without the account that opens it. The hosts define the codes.
struct Media {
    std::int32_t type = 0;
    std::int32_t requestMode = 0;
    std::string address; // printable ASCII, like the channel
    std::uint16_t port = 0;
    std::string channel; // at the source: a number or a GUID; empty if it has only one
    std::int64_t streamType = 0;
    std::int64_t beginTime = 0; // of recorded video
    std::int64_t endTime = 0;
    std::uint32_t recordMask = 0;
    std::int32_t source = 0;
};

// The last playback control for recorded video.
struct PlaybackControl {
    std::uint16_t type = 0;
    std::uint16_t value = 0;
};

struct SubWindow {
    std::uint32_t index = 0;
    std::uint32_t osdId = 0;
    std::vector<Media> media{};                // empty: it plays nothing
    std::optional<PlaybackControl> control{};  // control of what it plays
    std::optional<std::int32_t> polledGroup{}; // cycles through a channel group instead of playing media
    std::optional<std::int32_t> sound{};       // the input channel whose sound is on
    bool border = false;

    bool IsIdle() const { return media.empty() && !polledGroup; }
    // Clears what it showed.
    void StopShowing();
};

// How a window is split. The mode is the number of sub-windows.
struct Split {
    std::uint32_t mode = 0;
    std::vector<SubWindow> subWindows;

    // Null for an unknown index.
    SubWindow* Find(std::uint32_t index);
    const SubWindow* Find(std::uint32_t index) const;
};

struct Window {
    std::uint32_t id = 0;
    Rect rect;
    Split split;
    std::optional<std::uint32_t> zoomed{}; // the sub-window that fills the whole window
};

} // namespace simulated_decoder
