#pragma once

#include <semaphore.h>

#include "Condition.h"
#include "ThreadLock.h"

// Counting semaphore between the threads of one process.
class CMySemaphore {
public:
    // An initial count above the maximum is reduced to it.
    CMySemaphore(unsigned int nInitCount, unsigned int nMaxCount);
    CMySemaphore(const CMySemaphore&) = delete;
    CMySemaphore& operator=(const CMySemaphore&) = delete;

    // Takes one unit, waiting without limit.
    void lock();
    // Takes one unit within ms milliseconds; false on timeout.
    bool lock(unsigned int ms);
    // Takes one unit if there is one, without waiting.
    bool trylock();
    // Releases one unit, or n units. False, with the count unchanged, when n is not positive or the maximum
    // would be exceeded. *pPrev, if given, receives the count before the call.
    bool unlock();
    bool unlock(int n, int* pPrev);

private:
    CPFCondition m_FCond;
    CLock m_FEventCS;
    unsigned int m_MaxCount;
    volatile unsigned int m_semCount TVWALL_GUARDED_BY(m_FEventCS);
};

// Mutual exclusion between processes on one machine, through a named semaphore that outlives them.
class CNameLock {
public:
    // Opens the semaphore of this name ("/name") or creates it.
    explicit CNameLock(const char* szName);
    ~CNameLock();
    CNameLock(const CNameLock&) = delete;
    CNameLock& operator=(const CNameLock&) = delete;

    // Both are false when the semaphore could neither be opened nor created.
    bool Lock();
    bool Unlock();

private:
    sem_t* m_pSemLock; // null when it could not be opened
};
