#pragma once

#include <cstddef>

namespace scale {

// Heap bytes in use in the whole process, loaded libraries included. Counted at every allocation and release,
// because the allocator's own figure counts its thread caches as used.
std::size_t HeapInUse();

} // namespace scale
