#pragma once
// The screens of the wall in rows and columns, and the outputs of the decoder that feed them.

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "Link/ErrorCode.h"

namespace simulated_decoder {

// In pixels.
inline constexpr std::int64_t kScreenWidth = 1920;
inline constexpr std::int64_t kScreenHeight = 1080;

inline constexpr int kMaxScreens = 16; // per row and per column
// Outputs are numbered from 1; there is one for each screen of the largest wall.
inline constexpr std::uint32_t kOutputs = std::uint32_t{kMaxScreens} * kMaxScreens;

// A place in the grid, counted from 0 at the upper left.
struct GridPosition {
    std::uint32_t column = 0;
    std::uint32_t row = 0;

    bool operator==(const GridPosition&) const = default;
    // Row by row.
    bool operator<(const GridPosition& other) const
    {
        return row != other.row ? row < other.row : column < other.column;
    }
};

struct Binding {
    std::uint32_t output = 0;
    GridPosition position;
};

// Each operation is done completely or not at all. At first no screen is bound.
class ScreenGrid {
public:
    // Rows and columns from 1 to kMaxScreens.
    ScreenGrid(int rows, int columns) : m_rows(rows), m_columns(columns) {}

    int Rows() const { return m_rows; }
    int Columns() const { return m_columns; }
    // The output at each bound position.
    const std::map<GridPosition, std::uint32_t>& Bound() const { return m_bound; }

    // A screen that is dropped loses its binding.
    ErrorCode Resize(int rows, int columns);
    // An output feeds one screen and a screen shows one output; no binding is replaced implicitly.
    ErrorCode Bind(const std::vector<Binding>& bindings);
    ErrorCode Unbind(const std::vector<GridPosition>& positions);

private:
    bool Holds(const GridPosition& position) const;

    int m_rows;
    int m_columns;
    std::map<GridPosition, std::uint32_t> m_bound;
};

} // namespace simulated_decoder
