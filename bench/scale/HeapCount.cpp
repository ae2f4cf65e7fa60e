#include "HeapCount.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>

#include <malloc.h>

// The C library's own functions, behind the ones that are replaced here.
extern "C" {
void* __libc_malloc(std::size_t nLen);
void* __libc_calloc(std::size_t nCount, std::size_t nLen);
void* __libc_realloc(void* pBlock, std::size_t nLen);
void* __libc_memalign(std::size_t nAlignment, std::size_t nLen);
void __libc_free(void* pBlock);
}

namespace {

constinit std::atomic<std::size_t> s_nInUse{0};

void* Counted(void* pBlock)
{
    s_nInUse.fetch_add(malloc_usable_size(pBlock), std::memory_order_relaxed);
    return pBlock;
}

} // namespace

#define REPLACES_LIBRARY __attribute__((visibility("default")))

extern "C" {

REPLACES_LIBRARY void* malloc(std::size_t nLen) noexcept { return Counted(__libc_malloc(nLen)); }

REPLACES_LIBRARY void* calloc(std::size_t nCount, std::size_t nLen) noexcept
{
    return Counted(__libc_calloc(nCount, nLen));
}

REPLACES_LIBRARY void* realloc(void* pBlock, std::size_t nLen) noexcept
{
    const std::size_t nBefore = malloc_usable_size(pBlock);
    void* pMoved = __libc_realloc(pBlock, nLen);
    if (pMoved != nullptr || nLen == 0) {
        s_nInUse.fetch_sub(nBefore, std::memory_order_relaxed);
    }
    return Counted(pMoved);
}

REPLACES_LIBRARY void* memalign(std::size_t nAlignment, std::size_t nLen) noexcept
{
    return Counted(__libc_memalign(nAlignment, nLen));
}

REPLACES_LIBRARY void* aligned_alloc(std::size_t nAlignment, std::size_t nLen) noexcept
{
    return Counted(__libc_memalign(nAlignment, nLen));
}

REPLACES_LIBRARY int posix_memalign(void** ppBlock, std::size_t nAlignment, std::size_t nLen) noexcept
{
    void* pBlock = Counted(__libc_memalign(nAlignment, nLen));
    if (pBlock == nullptr) {
        return ENOMEM;
    }
    *ppBlock = pBlock;
    return 0;
}

REPLACES_LIBRARY void free(void* pBlock) noexcept
{
    s_nInUse.fetch_sub(malloc_usable_size(pBlock), std::memory_order_relaxed);
    __libc_free(pBlock);
}

} // extern "C"

namespace scale {

std::size_t HeapInUse() { return s_nInUse.load(std::memory_order_relaxed); }

} // namespace scale
