#pragma once
// The wall in memory: screens in rows and columns, and the canvas windows that lie on them.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

#include "ErrorCode.h"

namespace simulated_decoder {

// In wall coordinates: pixels from the wall's upper left corner.
inline constexpr std::int64_t kScreenWidth = 1920;
inline constexpr std::int64_t kScreenHeight = 1080;

inline constexpr std::size_t kMaxWindows = 4096;
inline constexpr std::uint32_t kMaxMode = 64;

struct Rect {
    std::int64_t x = 0;
    std::int64_t y = 0;
    std::int64_t width = 0;
    std::int64_t height = 0;
};

struct SubWindow {
    std::uint32_t index = 0;
    std::uint32_t osdId = 0;
};

// How a window is split. The mode is the number of sub-windows.
struct Split {
    std::uint32_t mode = 0;
    std::vector<SubWindow> subWindows;
};

struct Window {
    std::uint32_t id = 0;
    Rect rect;
    Split split;
};

struct WindowMove {
    std::uint32_t id = 0;
    Rect rect;
};

struct WindowSplit {
    std::uint32_t id = 0;
    Split split;
};

// A change of several windows is made whole or not at all: when one of them is refused, the wall stays as it
// was.
class Wall {
public:
    Wall(int rows, int columns) : m_rows(rows), m_columns(columns) {}

    int Rows() const { return m_rows; }
    int Columns() const { return m_columns; }
    std::int64_t Width() const { return m_columns * kScreenWidth; }
    std::int64_t Height() const { return m_rows * kScreenHeight; }

    // From the lowest layer to the highest; the layer of the first is 1.
    const std::vector<Window>& Windows() const { return m_windows; }
    // Grows with every change.
    std::uint64_t Revision() const { return m_revision; }

    // New windows go on top, the last of the list topmost.
    ErrorCode Create(const std::vector<Window>& windows);
    ErrorCode Move(const std::vector<WindowMove>& moves);
    ErrorCode Resplit(const std::vector<WindowSplit>& splits);
    ErrorCode Destroy(const std::vector<std::uint32_t>& ids);
    ErrorCode Raise(std::uint32_t id);
    void Clear();

private:
    using Draft = std::vector<Window>;
    ErrorCode Change(const std::function<ErrorCode(Draft&)>& change);
    ErrorCode CheckRect(const Rect& rect) const;

    int m_rows;
    int m_columns;
    std::vector<Window> m_windows;
    std::uint64_t m_revision = 0;
};

} // namespace simulated_decoder
