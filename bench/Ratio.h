#pragma once

#include <ctime>
#include <type_traits>

#include <benchmark/benchmark.h>

// Processor time of the calling thread, so that other processes do not count.
inline double ThreadSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// Alternates the measured work and its yardstick, so that both see the same machine; the manual time is the
// work's, the counter the work's time divided by the yardstick's. Seconds returned by the work are not
// counted.
template <class Work, class Yardstick>
void RunRatio(benchmark::State& state, const char* counter, Work work, Yardstick yardstick)
{
    const auto seconds = [](auto run) {
        const double start = ThreadSeconds();
        double uncounted = 0;
        if constexpr (std::is_void_v<decltype(run())>) {
            run();
        } else {
            uncounted = run();
        }
        return ThreadSeconds() - start - uncounted;
    };
    double workTime = 0;
    double yardstickTime = 0;
    for ([[maybe_unused]] auto _ : state) {
        const double elapsed = seconds(work);
        workTime += elapsed;
        yardstickTime += seconds(yardstick);
        state.SetIterationTime(elapsed);
    }
    state.counters[counter] = workTime / yardstickTime;
}
