#pragma once

#include <cstdint>

// Threads and sleeping.
class CPFHelper {
public:
    // Starts a joinable thread; the caller joins or detaches the pthread_t that *pThreadID receives. False
    // when no thread could be started or an argument other than pArg is null.
    static bool CreateThread(void* (*pThreadFunc)(void*), void* pArg, uint64_t* pThreadID);
    // Sleeps for at least ms milliseconds, even when interrupted by signals. Always true.
    static bool Sleep(unsigned int ms);
    // The calling thread's errno.
    static int GetLastError();
};
