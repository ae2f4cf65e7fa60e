#pragma once

#include <functional>

// The sleep between two polls of the session, in the hands of the test.
namespace test_clock {

// Runs instead of every CPFHelper::Sleep, with its milliseconds, on the sleeping thread. An empty hook sleeps
// for real. Set it while no other thread sleeps.
using SleepHook = std::function<void(unsigned int ms)>;
void SetSleepHook(SleepHook hook);

} // namespace test_clock
