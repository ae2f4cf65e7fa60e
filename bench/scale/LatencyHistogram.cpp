#include "LatencyHistogram.h"

#include <bit>
#include <cmath>

namespace scale {

// The buckets below 2^kStepBits hold one value each; every further power of two has 2^kStepBits buckets.
std::size_t LatencyHistogram::Bucket(uint64_t value)
{
    const auto shift = static_cast<unsigned int>(std::bit_width(value >> kStepBits));
    return shift == 0 ? value
                      : (std::size_t{shift} << kStepBits) + (value >> (shift - 1)) - (1ULL << kStepBits);
}

uint64_t LatencyHistogram::UpperEnd(std::size_t bucket)
{
    const std::size_t shift = bucket >> kStepBits;
    if (shift == 0) {
        return bucket;
    }
    const uint64_t step = (bucket & ((1ULL << kStepBits) - 1)) + (1ULL << kStepBits);
    return ((step + 1) << (shift - 1)) - 1;
}

void LatencyHistogram::Record(uint64_t microseconds)
{
    m_counts.at(Bucket(microseconds)).fetch_add(1, std::memory_order_relaxed);
}

void LatencyHistogram::Take(LatencyHistogram& other)
{
    for (std::size_t i = 0; i < kBuckets; ++i) {
        m_counts.at(i) += other.m_counts.at(i).exchange(0);
    }
}

uint64_t LatencyHistogram::Count() const
{
    uint64_t total = 0;
    for (const auto& count : m_counts) {
        total += count;
    }
    return total;
}

uint64_t LatencyHistogram::Percentile(double share) const
{
    const auto wanted = static_cast<uint64_t>(std::ceil(static_cast<double>(Count()) * share));
    uint64_t seen = 0;
    for (std::size_t i = 0; wanted != 0 && i < kBuckets; ++i) {
        seen += m_counts.at(i);
        if (seen >= wanted) {
            return UpperEnd(i);
        }
    }
    return 0;
}

} // namespace scale
