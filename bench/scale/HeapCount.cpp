#include "HeapCount.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>

#include <malloc.h>

// The C library's own functions, wrapped by the ones below.
extern "C" {
void* __libc_malloc(std::size_t len);
void* __libc_calloc(std::size_t count, std::size_t len);
void* __libc_realloc(void* block, std::size_t len);
void* __libc_memalign(std::size_t alignment, std::size_t len);
void __libc_free(void* block);
}

namespace {

constinit std::atomic<std::size_t> g_inUse{0};

void* Counted(void* block)
{
    g_inUse.fetch_add(malloc_usable_size(block), std::memory_order_relaxed);
    return block;
}

} // namespace

#define REPLACES_LIBRARY __attribute__((visibility("default")))

extern "C" {

REPLACES_LIBRARY void* malloc(std::size_t len) noexcept { return Counted(__libc_malloc(len)); }

REPLACES_LIBRARY void* calloc(std::size_t count, std::size_t len) noexcept
{
    return Counted(__libc_calloc(count, len));
}

REPLACES_LIBRARY void* realloc(void* block, std::size_t len) noexcept
{
    const std::size_t before = malloc_usable_size(block);
    void* moved = __libc_realloc(block, len);
    if (moved != nullptr || len == 0) {
        g_inUse.fetch_sub(before, std::memory_order_relaxed);
    }
    return Counted(moved);
}

REPLACES_LIBRARY void* memalign(std::size_t alignment, std::size_t len) noexcept
{
    return Counted(__libc_memalign(alignment, len));
}

REPLACES_LIBRARY void* aligned_alloc(std::size_t alignment, std::size_t len) noexcept
{
    return Counted(__libc_memalign(alignment, len));
}

REPLACES_LIBRARY int posix_memalign(void** result, std::size_t alignment, std::size_t len) noexcept
{
    void* block = Counted(__libc_memalign(alignment, len));
    if (block == nullptr) {
        return ENOMEM;
    }
    *result = block;
    return 0;
}

REPLACES_LIBRARY void free(void* block) noexcept
{
    g_inUse.fetch_sub(malloc_usable_size(block), std::memory_order_relaxed);
    __libc_free(block);
}

} // extern "C"

namespace scale {

std::size_t HeapInUse() { return g_inUse.load(std::memory_order_relaxed); }

} // namespace scale
