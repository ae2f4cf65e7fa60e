#pragma once
// The wall in memory: its screens, and the canvas windows that lie on them.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "Link/ErrorCode.h"
#include "State/ScreenGrid.h"
#include "State/Window.h"

namespace simulated_decoder {

inline constexpr std::size_t kMaxWindows = 4096;
inline constexpr std::uint32_t kMaxMode = 64;

struct WindowMove {
    std::uint32_t id = 0;
    Rect rect;
};

struct WindowSplit {
    std::uint32_t id = 0;
    Split split;
};

// What happens to one sub-window; any result but success refuses the whole request.
using SubWindowChange = std::function<ErrorCode(SubWindow&)>;

// The sub-windows of one window by index, each with its change.
struct WindowOrder {
    std::uint32_t id = 0;
    std::vector<std::pair<std::uint32_t, SubWindowChange>> changes;
};

// Display switches for all windows.
struct DisplaySwitches {
    bool borders = true; // for the sub-windows that have one
    bool windowIds = true;
};

// A change to several windows is made completely or not at all: if one is refused, the wall stays as it was.
class Wall {
public:
    // Rows and columns of screens.
    Wall(int rows, int columns) : m_screens(rows, columns) {}

    const ScreenGrid& Screens() const { return m_screens; }
    int Rows() const { return m_screens.Rows(); }
    int Columns() const { return m_screens.Columns(); }
    // In pixels.
    std::int64_t Width() const { return Columns() * kScreenWidth; }
    std::int64_t Height() const { return Rows() * kScreenHeight; }
    const DisplaySwitches& Switches() const { return m_switches; }

    // From the lowest layer, 1, to the highest.
    const std::vector<Window>& Windows() const { return m_windows; }
    // Whether any sub-window cycles through the group.
    bool IsPolled(std::int32_t group) const;
    // Increases with every change.
    std::uint64_t Revision() const { return m_revision; }

    // Refused when a window would be entirely off the wall. A screen that is dropped loses its binding.
    ErrorCode Resize(int rows, int columns);
    ErrorCode Bind(const std::vector<Binding>& bindings);
    ErrorCode Unbind(const std::vector<GridPosition>& positions);
    void Switch(const DisplaySwitches& switches);

    // New windows go on top, the last in the list topmost.
    ErrorCode Create(const std::vector<Window>& windows);
    // Replaces all windows by these, the last in the list topmost.
    ErrorCode Replace(std::vector<Window> windows);
    ErrorCode Move(const std::vector<WindowMove>& moves);
    // A sub-window that still exists afterwards keeps what it showed.
    ErrorCode Resplit(const std::vector<WindowSplit>& splits);
    ErrorCode Destroy(const std::vector<std::uint32_t>& ids);
    ErrorCode Raise(std::uint32_t id);
    void Clear();

    // Lets one sub-window fill its window, or shows all of them again.
    ErrorCode Zoom(std::uint32_t id, std::uint32_t index, bool zoomed);
    ErrorCode ChangeSubWindows(const std::vector<WindowOrder>& orders);

private:
    ErrorCode Changed(ErrorCode code);
    // It may extend beyond any edge, but at least one pixel lies on the wall.
    ErrorCode CheckRect(const Rect& rect) const;
    ErrorCode CheckWindow(const Window& window) const;

    ScreenGrid m_screens;
    DisplaySwitches m_switches;
    std::vector<Window> m_windows;
    std::uint64_t m_revision = 0;
};

} // namespace simulated_decoder
