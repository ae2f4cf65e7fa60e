#pragma once

#include <type_traits>

// Atomic access to scalar fields that are declared as plain or volatile ones. Every access to such a field
// from the moment that a second thread may see it goes through these.

// What was written before the store that this load sees is visible after it.
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

// For fields whose value stands alone: no order with other memory.
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
