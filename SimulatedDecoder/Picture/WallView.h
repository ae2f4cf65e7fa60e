#pragma once
// The visible wall: computed once from its state, then drawn as SVG and as text and sent to the page.
// Rectangles are in wall coordinates.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "State/DeviceState.h"

namespace simulated_decoder {

struct CellView {
    enum class Kind { Idle, Plays, Polls };

    std::uint32_t index = 0;
    std::uint32_t osdId = 0;
    Kind kind = Kind::Idle;
    std::string title;  // the source, or the group that it cycles through; ASCII, empty when idle
    std::string detail; // channel, stream and so on; ASCII, empty when idle
    std::optional<std::int32_t> sound; // the channel whose sound is on
    bool border = false;               // it has a border
    bool framed = false;               // its border is shown

    // Title and detail, or this when it is idle.
    std::string Shows(const char* idle) const;
};

struct WindowView {
    std::uint32_t id = 0;
    std::size_t layer = 0; // 1 is the lowest
    Rect rect;             // may extend beyond the wall
    Rect seen;             // the part on the wall
    std::uint32_t mode = 0;
    std::optional<std::uint32_t> zoomed; // the sub-window that fills it
    std::size_t showing = 0;             // sub-windows that play or poll
    bool covered = false;                // a single higher window hides it
    // All of the window's cells, or none: to keep a wall of many windows quick to draw, only some of the
    // highest windows have them.
    std::vector<CellView> cells;
    // The near-square grid of the visible cells, row by row: 2x2 for 4, 3 columns and 2 rows for 5.
    std::size_t columns = 1;
    std::size_t rows = 1;

    // The visible cells: all, or the one that fills the window.
    std::span<const CellView> SeenCells() const;
};

struct ScreenView {
    GridPosition position;
    Rect rect;
    std::optional<std::uint32_t> output; // the output bound to it
};

// A sub-window that shows something, has sound on or has a border.
struct BusyCell {
    std::uint32_t windowId = 0;
    CellView cell;
};

struct WallView {
    int rows = 0;
    int columns = 0;
    Rect rect;
    std::size_t bound = 0; // bound screens
    DisplaySwitches switches;
    std::vector<std::string> tally;       // such as "2 windows", "5 sub-windows", "3 playing"
    std::vector<std::string> switchedOff; // such as "borders off"
    std::vector<ScreenView> screens;      // row by row
    std::vector<WindowView> windows;      // from the lowest layer to the highest
    std::vector<BusyCell> busy;           // from the highest layer down, up to a limit
    std::size_t busyCount = 0;            // all busy cells, those beyond the limit included
};

WallView See(const DeviceState& state);
// One window with its cells; nothing for an unknown id.
std::optional<WindowView> SeeWindow(const DeviceState& state, std::uint32_t id);

} // namespace simulated_decoder
