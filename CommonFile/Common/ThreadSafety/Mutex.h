#pragma once

#include <mutex>

#include "ThreadSafety.h"

// A standard mutex for which the compiler checks who holds it; see ThreadSafety.h.
template <class Mutex>
class TVWALL_LOCK TCheckedMutex {
public:
    void lock() TVWALL_ACQUIRE() { m_mutex.lock(); }
    void unlock() TVWALL_RELEASE() { m_mutex.unlock(); }

private:
    Mutex m_mutex;
};

using CMutex = TCheckedMutex<std::mutex>;
using CRecursiveMutex = TCheckedMutex<std::recursive_mutex>;

// Holds a mutex for the length of a scope.
template <class Mutex>
class TVWALL_LOCK_SCOPE TMutexGuard {
public:
    explicit TMutexGuard(Mutex& mutex) TVWALL_ACQUIRE(mutex) : m_mutex(mutex) { m_mutex.lock(); }
    ~TMutexGuard() TVWALL_RELEASE() { m_mutex.unlock(); }
    TMutexGuard(const TMutexGuard&) = delete;
    TMutexGuard& operator=(const TMutexGuard&) = delete;

private:
    Mutex& m_mutex;
};
