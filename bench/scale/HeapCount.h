#pragma once

#include <cstddef>

namespace scale {

// Bytes of the heap that are in use in the whole process, the loaded libraries included. Counted at every
// allocation and release, because the allocator's own figure takes what its thread caches hold for used.
std::size_t HeapInUse();

} // namespace scale
