#pragma once

#include <algorithm>
#include <chrono>
#include <random>

namespace standin_host {

// How long to wait before each attempt to connect again: up to 2 s, 4 s, 8 s, 16 s, then 30 s. Half of that
// is left to chance, so that the hosts of a decoder that was restarted do not all come at once.
class Backoff {
public:
    static constexpr std::chrono::milliseconds kFirst{2000};
    static constexpr std::chrono::milliseconds kLongest{30'000};

    // Any seed will do.
    explicit Backoff(uint64_t seed) : m_random(seed) {}

    // From half of the current bound to all of it.
    std::chrono::milliseconds Next()
    {
        std::uniform_int_distribution<long> wait(m_bound.count() / 2, m_bound.count());
        m_bound = std::min(2 * m_bound, kLongest);
        return std::chrono::milliseconds(wait(m_random));
    }
    void Reset() { m_bound = kFirst; }

private:
    std::minstd_rand m_random;
    std::chrono::milliseconds m_bound = kFirst;
};

} // namespace standin_host
