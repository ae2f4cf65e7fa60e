#pragma once

#include <type_traits>

// Atomic access to scalar fields that are declared plain or volatile. Once a second thread may see such a
// field, every access goes through these.

// Acquire: whatever preceded the store that this load sees is visible afterwards.
template <class T>
T AtomicLoad(const volatile T& field)
{
    static_assert(std::is_scalar_v<T>);
    T value;
    __atomic_load(&field, &value, __ATOMIC_ACQUIRE);
    return value;
}

template <class T>
void AtomicStore(volatile T& field, std::type_identity_t<T> value)
{
    static_assert(std::is_scalar_v<T>);
    __atomic_store(&field, &value, __ATOMIC_RELEASE);
}

// Relaxed: for fields whose value stands alone; no ordering with other memory.
template <class T>
T AtomicLoadRelaxed(const volatile T& field)
{
    static_assert(std::is_scalar_v<T>);
    T value;
    __atomic_load(&field, &value, __ATOMIC_RELAXED);
    return value;
}

template <class T>
void AtomicStoreRelaxed(volatile T& field, std::type_identity_t<T> value)
{
    static_assert(std::is_scalar_v<T>);
    __atomic_store(&field, &value, __ATOMIC_RELAXED);
}
