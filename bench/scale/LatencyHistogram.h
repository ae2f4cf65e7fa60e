#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace scale {

// Counts durations in microseconds, in buckets about 3 percent wide. Its size is fixed, so that its records
// do not grow with the length of a run. Any thread may record.
class LatencyHistogram {
public:
    void Record(uint64_t microseconds);
    // Adds the counts of another histogram and empties it.
    void Take(LatencyHistogram& other);

    uint64_t Count() const;
    // The upper end of the bucket that holds the given share of all, 0 to 1; 0 when there are none.
    uint64_t Percentile(double share) const;

private:
    // Each power of two is split into 2^kStepBits buckets.
    static constexpr unsigned int kStepBits = 5;
    static constexpr std::size_t kBuckets = std::size_t{64 - kStepBits + 1} << kStepBits;

    static std::size_t Bucket(uint64_t value);
    static uint64_t UpperEnd(std::size_t bucket);

    std::array<std::atomic<uint64_t>, kBuckets> m_counts{};
};

} // namespace scale
