#pragma once

#include <pthread.h>

#include "ThreadSafety.h"

// Mutual exclusion between the threads of one process. To a host it is only a part of CNetProtocolProc; its
// functions are inside the plug-in and not exported.
class TVWALL_LOCK CLock {
public:
    CLock(); // recursive
    explicit CLock(bool bRecursive);
    ~CLock();
    CLock(const CLock&) = delete;
    CLock& operator=(const CLock&) = delete;

    void Lock() TVWALL_ACQUIRE();
    void Unlock() TVWALL_RELEASE();

    // The mutex itself, for condition variables that release it while they wait. It stays owned by the lock.
    pthread_mutex_t* Handle() { return &m_CriticalSection; }

private:
    pthread_mutex_t m_CriticalSection;
};

// Holds a lock for the length of a scope.
class TVWALL_LOCK_SCOPE CAutoLock {
public:
    explicit CAutoLock(CLock& lock) TVWALL_ACQUIRE(lock) : m_Lock(lock) { m_Lock.Lock(); }
    ~CAutoLock() TVWALL_RELEASE() { m_Lock.Unlock(); }
    CAutoLock(const CAutoLock&) = delete;
    CAutoLock& operator=(const CAutoLock&) = delete;

private:
    CLock& m_Lock;
};
