#pragma once
// Allocations of the plug-in that are counted and fail on order. Only a test program that links
// FailingAllocation.cpp does it; elsewhere nothing happens.

#include <array>
#include <atomic>
#include <string_view>

namespace allocation_fault {

inline thread_local long g_allowed = -1;    // allocations until the one that fails; -1: none fails
inline thread_local bool g_forGood = false; // those behind it fail, too
inline thread_local int g_pauses = 0;
inline std::atomic<long> g_taken = 0;
inline std::atomic<long> g_givenBack = 0;
inline std::atomic<long> g_peak = 0;

// Bytes that the whole program has allocated so far, and those of them that are not freed yet.
inline long TakenBytes() { return g_taken; }
inline long LiveBytes() { return g_taken - g_givenBack; }
// The most that was live since the last call of ResetPeak; from one thread at a time.
inline long PeakBytes() { return g_peak; }
inline void ResetPeak() { g_peak = LiveBytes(); }

// The allocation behind the next allowed ones on this thread fails, once or for good.
inline void Arm(long allowed, bool forGood = false)
{
    g_allowed = allowed;
    g_forGood = forGood;
}
// True when it has failed, or when none was to fail.
inline bool Disarm()
{
    const bool failed = g_allowed < 0;
    Arm(-1);
    return failed;
}

// While they are watched, no block of the plug-in may hold one of the secrets when it is freed.
inline std::array<std::string_view, 4> g_secrets; // set before the first watch; empty ones are not looked for
inline std::atomic<bool> g_watched = false;
inline std::atomic<long> g_unwiped = 0; // blocks that held one all the same

// What the test itself allocates and frees on the way does not count.
class Pause {
public:
    Pause() { ++g_pauses; }
    ~Pause() { --g_pauses; }
    Pause(const Pause&) = delete;
    Pause& operator=(const Pause&) = delete;
};

} // namespace allocation_fault
