#pragma once
// Allocations of the plug-in that are counted and fail on order. Only a test program that links
// FailingAllocation.cpp does it; elsewhere nothing happens.

#include <atomic>

namespace allocation_fault {

inline thread_local long t_nAllowed = -1; // allocations until the one that fails; -1: none fails
inline thread_local int t_nPauses = 0;
inline std::atomic<long> g_nLive = 0;

// Allocations of the whole program that are not freed yet.
inline long Live() { return g_nLive; }

inline thread_local bool t_bForGood = false; // the allocations behind the one that fails fail, too

// The allocation behind the next nAllowed ones on this thread fails, and all that follow it if for good.
inline void Arm(long nAllowed, bool bForGood = false)
{
    t_nAllowed = nAllowed;
    t_bForGood = bForGood;
}
// True when it has failed.
inline bool Disarm()
{
    const bool bFailed = t_nAllowed < 0;
    Arm(-1);
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
