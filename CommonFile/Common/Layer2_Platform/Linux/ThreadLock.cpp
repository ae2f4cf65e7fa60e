#include "ThreadLock.h"

CLock::CLock() : CLock(true) {}

CLock::CLock(bool bRecursive)
{
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, bRecursive ? PTHREAD_MUTEX_RECURSIVE : PTHREAD_MUTEX_NORMAL);
    pthread_mutex_init(&m_CriticalSection, &attributes);
    pthread_mutexattr_destroy(&attributes);
}

CLock::~CLock() { pthread_mutex_destroy(&m_CriticalSection); }

void CLock::Lock() { pthread_mutex_lock(&m_CriticalSection); }

void CLock::Unlock() { pthread_mutex_unlock(&m_CriticalSection); }
