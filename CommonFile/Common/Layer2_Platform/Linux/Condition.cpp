#include "Condition.h"

#include <ctime>

CPFCondition::CPFCondition()
{
    pthread_condattr_t attributes;
    pthread_condattr_init(&attributes);
    pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
    pthread_cond_init(&m_cond, &attributes);
    pthread_condattr_destroy(&attributes);
}

CPFCondition::~CPFCondition() { pthread_cond_destroy(&m_cond); }

void CPFCondition::Wait(CLock& lock) { pthread_cond_wait(&m_cond, lock.Handle()); }

bool CPFCondition::WaitUntil(CLock& lock, const timespec& deadline)
{
    return pthread_cond_timedwait(&m_cond, lock.Handle(), &deadline) == 0;
}

void CPFCondition::WakeOne() { pthread_cond_signal(&m_cond); }

void CPFCondition::WakeAll() { pthread_cond_broadcast(&m_cond); }
