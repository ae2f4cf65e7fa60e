#include "TestClock.h"

#include "PFHelper.h"

namespace {

test_clock::SleepHook g_hook;

} // namespace

namespace test_clock {

void SetSleepHook(SleepHook hook) { g_hook = std::move(hook); }

} // namespace test_clock

// The linker sends every call of CPFHelper::Sleep here and gives the original the other name.
bool RealSleep(unsigned int ms) __asm__("__real__ZN9CPFHelper5SleepEj");
bool WrappedSleep(unsigned int ms) __asm__("__wrap__ZN9CPFHelper5SleepEj");

bool WrappedSleep(unsigned int ms)
{
    if (!g_hook) {
        return RealSleep(ms);
    }
    g_hook(ms);
    return true;
}
