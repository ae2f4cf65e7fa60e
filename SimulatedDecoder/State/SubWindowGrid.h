#pragma once
// How the sub-windows of a window lie in it; both pictures of the wall draw them by it.

#include <cstddef>

namespace simulated_decoder {

// The near-square grid for `count` sub-windows: 1x1, 2x2 for 4, 3x3 for 9, 3 columns and 2 rows for 5 or 6.
struct SubWindowGrid {
    explicit SubWindowGrid(std::size_t count)
    {
        while (columns * columns < count) {
            ++columns;
        }
        rows = (count + columns - 1) / columns;
    }

    std::size_t columns = 1;
    std::size_t rows = 1;
};

} // namespace simulated_decoder
