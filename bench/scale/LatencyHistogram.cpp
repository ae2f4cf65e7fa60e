#include "LatencyHistogram.h"

#include <bit>
#include <cmath>

namespace scale {

// The buckets below 2^kStepBits hold one value each; every further power of two has 2^kStepBits buckets.
std::size_t CLatencyHistogram::Bucket(uint64_t nValue)
{
    const auto nShift = static_cast<unsigned int>(std::bit_width(nValue >> kStepBits));
    return nShift == 0 ? nValue
                       : (std::size_t{nShift} << kStepBits) + (nValue >> (nShift - 1)) - (1ULL << kStepBits);
}

uint64_t CLatencyHistogram::UpperEnd(std::size_t nBucket)
{
    const std::size_t nShift = nBucket >> kStepBits;
    if (nShift == 0) {
        return nBucket;
    }
    const uint64_t nStep = (nBucket & ((1ULL << kStepBits) - 1)) + (1ULL << kStepBits);
    return ((nStep + 1) << (nShift - 1)) - 1;
}

void CLatencyHistogram::Record(uint64_t nMicroseconds)
{
    m_counts.at(Bucket(nMicroseconds)).fetch_add(1, std::memory_order_relaxed);
}

void CLatencyHistogram::Take(CLatencyHistogram& other)
{
    for (std::size_t i = 0; i < kBuckets; ++i) {
        m_counts.at(i) += other.m_counts.at(i).exchange(0);
    }
}

uint64_t CLatencyHistogram::Count() const
{
    uint64_t nCount = 0;
    for (const auto& count : m_counts) {
        nCount += count;
    }
    return nCount;
}

uint64_t CLatencyHistogram::Percentile(double dShare) const
{
    const auto nWanted = static_cast<uint64_t>(std::ceil(static_cast<double>(Count()) * dShare));
    uint64_t nSeen = 0;
    for (std::size_t i = 0; nWanted != 0 && i < kBuckets; ++i) {
        nSeen += m_counts.at(i);
        if (nSeen >= nWanted) {
            return UpperEnd(i);
        }
    }
    return 0;
}

} // namespace scale
