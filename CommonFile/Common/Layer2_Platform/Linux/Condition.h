#pragma once

#include <pthread.h>

#include "ThreadLock.h"

// Condition variable on CLOCK_MONOTONIC, so that setting the system clock neither shortens nor lengthens a
// wait. A waiter holds the lock exactly once and rechecks its condition after every return.
class CPFCondition {
public:
    CPFCondition();
    ~CPFCondition();
    CPFCondition(const CPFCondition&) = delete;
    CPFCondition& operator=(const CPFCondition&) = delete;

    void Wait(CLock& lock) TVWALL_REQUIRES(lock);
    // False when the CLOCK_MONOTONIC time deadline has passed.
    bool WaitUntil(CLock& lock, const timespec& deadline) TVWALL_REQUIRES(lock);
    void WakeOne();
    void WakeAll();

private:
    pthread_cond_t m_cond;
};
