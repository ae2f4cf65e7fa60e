#pragma once
// Allocations of the plug-in that are counted and fail on order. Only a test program that links
// FailingAllocation.cpp does it; elsewhere nothing happens.

#include <array>
#include <atomic>
#include <string_view>

namespace allocation_fault {

inline thread_local long t_nAllowed = -1;    // allocations until the one that fails; -1: none fails
inline thread_local bool t_bForGood = false; // those behind it fail, too
inline thread_local int t_nPauses = 0;
inline std::atomic<long> g_nTaken = 0;
inline std::atomic<long> g_nGivenBack = 0;
inline std::atomic<long> g_nPeak = 0;

// Bytes that the whole program has allocated so far, and those of them that are not freed yet.
inline long TakenBytes() { return g_nTaken; }
inline long LiveBytes() { return g_nTaken - g_nGivenBack; }
// The most that was live since the last call of ResetPeak; from one thread at a time.
inline long PeakBytes() { return g_nPeak; }
inline void ResetPeak() { g_nPeak = LiveBytes(); }

// The allocation behind the next nAllowed ones on this thread fails, once or for good.
inline void Arm(long nAllowed, bool bForGood = false)
{
    t_nAllowed = nAllowed;
    t_bForGood = bForGood;
}
// True when it has failed, or when none was to fail.
inline bool Disarm()
{
    const bool bFailed = t_nAllowed < 0;
    Arm(-1);
    return bFailed;
}

// While they are watched, no block of the plug-in may hold one of the secrets when it is freed.
inline std::array<std::string_view, 4> g_secrets; // set before the first watch; empty ones are not looked for
inline std::atomic<bool> g_bWatched = false;
inline std::atomic<long> g_nUnwiped = 0; // blocks that held one all the same

// What the test itself allocates and frees on the way does not count.
class Pause {
public:
    Pause() { ++t_nPauses; }
    ~Pause() { --t_nPauses; }
    Pause(const Pause&) = delete;
    Pause& operator=(const Pause&) = delete;
};

} // namespace allocation_fault
