#include "PFTime.h"

timespec CPFTime::GetDeadline(unsigned int ms)
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return AddMilliseconds(now, ms);
}

timespec CPFTime::AddMilliseconds(const timespec& start, unsigned int ms)
{
    constexpr long NS_PER_MS = 1'000'000;
    constexpr long NS_PER_S = 1'000'000'000;
    timespec sum = start;
    sum.tv_sec += ms / 1000;
    sum.tv_nsec += static_cast<long>(ms % 1000) * NS_PER_MS;
    if (sum.tv_nsec >= NS_PER_S) {
        sum.tv_nsec -= NS_PER_S;
        ++sum.tv_sec;
    }
    return sum;
}
