// Replaces the allocation functions of this program, for C++ and for OpenSSL, by ones that fail on order.
// Those for C++ look for secrets in what is freed; OpenSSL's memory is its own affair.

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include <malloc.h>
#include <openssl/crypto.h>

#include "AllocationFault.h"

namespace {

bool MayAllocate()
{
    using namespace allocation_fault;
    return g_pauses != 0 || (g_allowed < 0 && !g_forGood) || g_allowed-- > 0;
}

long SizeOf(void* bytes) { return static_cast<long>(malloc_usable_size(bytes)); } // 0 for null

void CountTaken(void* bytes)
{
    allocation_fault::g_taken += SizeOf(bytes);
    allocation_fault::g_peak = std::max<long>(allocation_fault::g_peak, allocation_fault::LiveBytes());
}

// What was in the memory before, a secret of the test itself perhaps, is not to be taken for the plug-in's.
void* Taken(void* bytes)
{
    CountTaken(bytes);
    return bytes == nullptr ? nullptr : std::memset(bytes, 0xA5, static_cast<std::size_t>(SizeOf(bytes)));
}

void* Allocate(std::size_t size)
{
    return Taken(MayAllocate() ? std::malloc(size == 0 ? 1 : size) : nullptr);
}

void Free(void* bytes)
{
    allocation_fault::g_givenBack += SizeOf(bytes);
    std::free(bytes);
}

void* AllocateOrThrow(std::size_t size)
{
    if (void* bytes = Allocate(size)) {
        return bytes;
    }
    throw std::bad_alloc();
}

void FreeWatched(void* bytes)
{
    using namespace allocation_fault;
    if (bytes != nullptr && g_watched && g_pauses == 0) {
        const auto size = static_cast<std::size_t>(SizeOf(bytes));
        g_unwiped += std::any_of(g_secrets.begin(), g_secrets.end(), [&](std::string_view secret) {
            return !secret.empty() && memmem(bytes, size, secret.data(), secret.size()) != nullptr;
        });
    }
    Free(bytes);
}

void* CryptoAllocate(std::size_t size, const char*, int) { return Allocate(size); }
void* CryptoReallocate(void* bytes, std::size_t size, const char*, int)
{
    if (bytes == nullptr) {
        return Allocate(size);
    }
    const long before = SizeOf(bytes);
    void* moved = MayAllocate() ? std::realloc(bytes, size) : nullptr;
    if (moved != nullptr) {
        allocation_fault::g_givenBack += before;
        CountTaken(moved);
    }
    return moved;
}
void CryptoFree(void* bytes, const char*, int) { Free(bytes); }

[[maybe_unused]] const int kCryptoHooked =
    CRYPTO_set_mem_functions(CryptoAllocate, CryptoReallocate, CryptoFree) == 1 ? 1 : (std::abort(), 0);

} // namespace

void* operator new(std::size_t size) { return AllocateOrThrow(size); }
void* operator new[](std::size_t size) { return AllocateOrThrow(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return Allocate(size); }
void operator delete(void* bytes) noexcept { FreeWatched(bytes); }
void operator delete[](void* bytes) noexcept { FreeWatched(bytes); }
void operator delete(void* bytes, std::size_t) noexcept { FreeWatched(bytes); }
void operator delete[](void* bytes, std::size_t) noexcept { FreeWatched(bytes); }
void operator delete(void* bytes, const std::nothrow_t&) noexcept { FreeWatched(bytes); }
void operator delete[](void* bytes, const std::nothrow_t&) noexcept { FreeWatched(bytes); }
void operator delete[](void* bytes, std::size_t, std::align_val_t) noexcept { FreeWatched(bytes); }
