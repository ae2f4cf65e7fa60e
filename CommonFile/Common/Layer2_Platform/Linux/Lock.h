#pragma once

#include <pthread.h>

// Mutual exclusion between threads of one process.
class CLock {
public:
    CLock(); // recursive
    explicit CLock(bool bRecursive);
    ~CLock();
    CLock(const CLock&) = delete;
    CLock& operator=(const CLock&) = delete;

    void Lock();
    void Unlock();

private:
    pthread_mutex_t m_CriticalSection;
};
