#pragma once

#include <pthread.h>

// Mutual exclusion between the threads of one process.
class CLock {
public:
    CLock(); // recursive
    explicit CLock(bool bRecursive);
    ~CLock();
    CLock(const CLock&) = delete;
    CLock& operator=(const CLock&) = delete;

    void Lock();
    void Unlock();

    // The mutex itself, for condition variables that release it while they wait. It stays owned by the lock.
    pthread_mutex_t* Handle() { return &m_CriticalSection; }

private:
    pthread_mutex_t m_CriticalSection;
};

// Holds a lock for the length of a scope.
class CAutoLock {
public:
    explicit CAutoLock(CLock& lock) : m_Lock(lock) { m_Lock.Lock(); }
    ~CAutoLock() { m_Lock.Unlock(); }
    CAutoLock(const CAutoLock&) = delete;
    CAutoLock& operator=(const CAutoLock&) = delete;

private:
    CLock& m_Lock;
};
