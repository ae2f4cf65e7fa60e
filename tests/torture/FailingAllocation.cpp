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
    return t_nPauses != 0 || (t_nAllowed < 0 && !t_bForGood) || t_nAllowed-- > 0;
}

long SizeOf(void* pBytes) { return static_cast<long>(malloc_usable_size(pBytes)); } // 0 for null

void CountTaken(void* pBytes)
{
    allocation_fault::g_nTaken += SizeOf(pBytes);
    allocation_fault::g_nPeak = std::max<long>(allocation_fault::g_nPeak, allocation_fault::LiveBytes());
}

// What was in the memory before, a secret of the test itself perhaps, is not to be taken for the plug-in's.
void* Taken(void* pBytes)
{
    CountTaken(pBytes);
    return pBytes == nullptr ? nullptr : std::memset(pBytes, 0xA5, static_cast<std::size_t>(SizeOf(pBytes)));
}

void* Allocate(std::size_t nSize)
{
    return Taken(MayAllocate() ? std::malloc(nSize == 0 ? 1 : nSize) : nullptr);
}

void Free(void* pBytes)
{
    allocation_fault::g_nGivenBack += SizeOf(pBytes);
    std::free(pBytes);
}

void* AllocateOrThrow(std::size_t nSize)
{
    if (void* pBytes = Allocate(nSize)) {
        return pBytes;
    }
    throw std::bad_alloc();
}

void FreeWatched(void* pBytes)
{
    using namespace allocation_fault;
    if (pBytes != nullptr && g_bWatched && t_nPauses == 0) {
        const auto nSize = static_cast<std::size_t>(SizeOf(pBytes));
        g_nUnwiped += std::any_of(g_secrets.begin(), g_secrets.end(), [&](std::string_view secret) {
            return !secret.empty() && memmem(pBytes, nSize, secret.data(), secret.size()) != nullptr;
        });
    }
    Free(pBytes);
}

void* CryptoAllocate(std::size_t nSize, const char*, int) { return Allocate(nSize); }
void* CryptoReallocate(void* pBytes, std::size_t nSize, const char*, int)
{
    if (pBytes == nullptr) {
        return Allocate(nSize);
    }
    const long nBefore = SizeOf(pBytes);
    void* pMoved = MayAllocate() ? std::realloc(pBytes, nSize) : nullptr;
    if (pMoved != nullptr) {
        allocation_fault::g_nGivenBack += nBefore;
        CountTaken(pMoved);
    }
    return pMoved;
}
void CryptoFree(void* pBytes, const char*, int) { Free(pBytes); }

[[maybe_unused]] const int g_bCrypto =
    CRYPTO_set_mem_functions(CryptoAllocate, CryptoReallocate, CryptoFree) == 1 ? 1 : (std::abort(), 0);

} // namespace

void* operator new(std::size_t nSize) { return AllocateOrThrow(nSize); }
void* operator new[](std::size_t nSize) { return AllocateOrThrow(nSize); }
void* operator new(std::size_t nSize, const std::nothrow_t&) noexcept { return Allocate(nSize); }
void* operator new[](std::size_t nSize, const std::nothrow_t&) noexcept { return Allocate(nSize); }
void operator delete(void* pBytes) noexcept { FreeWatched(pBytes); }
void operator delete[](void* pBytes) noexcept { FreeWatched(pBytes); }
void operator delete(void* pBytes, std::size_t) noexcept { FreeWatched(pBytes); }
void operator delete[](void* pBytes, std::size_t) noexcept { FreeWatched(pBytes); }
void operator delete(void* pBytes, const std::nothrow_t&) noexcept { FreeWatched(pBytes); }
void operator delete[](void* pBytes, const std::nothrow_t&) noexcept { FreeWatched(pBytes); }
void operator delete[](void* pBytes, std::size_t, std::align_val_t) noexcept { FreeWatched(pBytes); }
