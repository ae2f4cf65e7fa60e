#pragma once

#include <chrono>

#include <benchmark/benchmark.h>

// Runs the measured work and its yardstick in turns, so that both see the same machine; the manual time is
// that of the work, the counter the work's time divided by the yardstick's.
template <class Work, class Yardstick>
void RunRatio(benchmark::State& state, const char* szCounter, Work work, Yardstick yardstick)
{
    using Clock = std::chrono::steady_clock;
    const auto Seconds = [](auto run) {
        const auto start = Clock::now();
        run();
        return std::chrono::duration<double>(Clock::now() - start).count();
    };
    double workTime = 0;
    double yardstickTime = 0;
    for ([[maybe_unused]] auto _ : state) {
        const double elapsed = Seconds(work);
        workTime += elapsed;
        yardstickTime += Seconds(yardstick);
        state.SetIterationTime(elapsed);
    }
    state.counters[szCounter] = workTime / yardstickTime;
}
