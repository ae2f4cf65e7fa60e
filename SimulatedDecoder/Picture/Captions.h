#pragma once
// What both pictures of the wall show alike.

#include <cstddef>
#include <string>
#include <vector>

#include "State/DeviceState.h"

namespace simulated_decoder {

// What a sub-window shows; both are printable ASCII, and empty when it is idle.
struct Caption {
    std::string title;  // the source, or the group that it cycles through
    std::string detail; // channel, stream and so on
};
Caption CaptionOf(const SubWindow& subWindow, const ChannelGroups& groups);

// Where the sub-windows of the whole wall stand.
struct Tally {
    std::size_t subWindows = 0;
    std::size_t playing = 0;
    std::size_t polling = 0;
    std::size_t sounding = 0;
};
Tally Count(const Wall& wall);
// In words, such as "2 windows, 5 sub-windows, 3 playing, 1 polling, 1 with sound", with this in between.
std::string TallyText(const Wall& wall, const char* separator);

// "1 screen", "2 screens"
std::string Plural(std::size_t count, const char* noun);

struct VisibleWindow {
    const Window* window;
    std::size_t layer;
    bool withCells; // its sub-windows are drawn, too
};
// From the lowest layer to the highest, without those that a single higher one covers. So that a wall with
// many windows is drawn in a moment, only so many of the highest ones are drawn with their sub-windows.
std::vector<VisibleWindow> VisibleWindows(const Wall& wall);

// The sub-windows of a window that are seen: all, or the one that fills it.
std::vector<const SubWindow*> VisibleSubWindows(const Window& window);

} // namespace simulated_decoder
