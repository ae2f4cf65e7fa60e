#pragma once
// Allocations of the plug-in that are counted and fail on order. Only a test program that links
// FailingAllocation.cpp does it; elsewhere nothing happens.

#include <atomic>

namespace allocation_fault {

inline thread_local long t_nAllowed = -1; // allocations until the one that fails; -1: none fails
inline thread_local int t_nPauses = 0;
inline std::atomic<long> g_nLive = 0;
inline std::atomic<long> g_nTaken = 0;
inline std::atomic<long> g_nGivenBack = 0;

// Allocations of the whole program that are not freed yet.
inline long Live() { return g_nLive; }

// Bytes that the whole program has allocated so far, and those of them that are not freed yet.
inline long TakenBytes() { return g_nTaken; }
inline long LiveBytes() { return g_nTaken - g_nGivenBack; }

// The allocation behind the next nAllowed ones on this thread fails, once.
inline void Arm(long nAllowed) { t_nAllowed = nAllowed; }
// True when it has failed.
inline bool Disarm()
{
    const bool bFailed = t_nAllowed < 0;
    t_nAllowed = -1;
    return bFailed;
}

// What the test itself allocates on the way does not count.
class Pause {
public:
    Pause() { ++t_nPauses; }
    ~Pause() { --t_nPauses; }
    Pause(const Pause&) = delete;
    Pause& operator=(const Pause&) = delete;
};

} // namespace allocation_fault
