#pragma once
// Overwrites memory that held a secret, such as a password or its digest, before it is released.

#include <cstddef>
#include <memory>
#include <type_traits>

// Zeroes nLen bytes in a way the optimiser cannot remove. Null is allowed when nLen is 0.
void WipeBytes(void* pData, size_t nLen);

// std::allocator, but each block is wiped before it is freed.
template <class T>
struct TWipingAllocator {
    using value_type = T;

    TWipingAllocator() = default;
    template <class Other>
    TWipingAllocator(const TWipingAllocator<Other>& /*other*/)
    {
    }
    T* allocate(size_t nCount) { return std::allocator<T>().allocate(nCount); }
    void deallocate(T* pBlock, size_t nCount)
    {
        WipeBytes(pBlock, nCount * sizeof(T));
        std::allocator<T>().deallocate(pBlock, nCount);
    }
    bool operator==(const TWipingAllocator& /*other*/) const { return true; }
};

// Frees an array of nLen bytes that came from new[], wiped.
struct S_WipingDelete {
    size_t nLen = 0;

    template <class Byte>
    void operator()(Byte* pBytes) const
    {
        static_assert(sizeof(Byte) == 1);
        WipeBytes(pBytes, nLen);
        delete[] pBytes;
    }
};
template <class Byte>
using TWipedBytes = std::unique_ptr<Byte[], S_WipingDelete>;

// Throws std::bad_alloc.
template <class Byte>
TWipedBytes<Byte> MakeWipedBytes(size_t nLen)
{
    return TWipedBytes<Byte>(new Byte[nLen], S_WipingDelete{nLen});
}

// A plain value, zero at first and wiped at the end of its scope.
template <class T>
struct TWiped {
    static_assert(std::is_trivially_copyable_v<T>);

    TWiped() = default;
    ~TWiped() { WipeBytes(&value, sizeof(value)); }
    TWiped(const TWiped&) = delete;
    TWiped& operator=(const TWiped&) = delete;

    T value{};
};
