#include "PFHelper.h"

#include <cerrno>
#include <ctime>
#include <pthread.h>

#include "PFTime.h"

bool CPFHelper::CreateThread(void* (*pThreadFunc)(void*), void* pArg, uint64_t* pThreadID)
{
    static_assert(sizeof(pthread_t) == sizeof(uint64_t));
    pthread_t thread{};
    if (pThreadFunc == nullptr || pThreadID == nullptr ||
        pthread_create(&thread, nullptr, pThreadFunc, pArg) != 0) {
        return false;
    }
    *pThreadID = thread;
    return true;
}

bool CPFHelper::Sleep(unsigned int ms)
{
    timespec left = CPFTime::AddMilliseconds({}, ms);
    while (nanosleep(&left, &left) != 0 && errno == EINTR) {
    }
    return true;
}

int CPFHelper::GetLastError() { return errno; }
