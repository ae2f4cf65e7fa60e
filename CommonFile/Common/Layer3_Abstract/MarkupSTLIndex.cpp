#include "MarkupSTLIndex.h"

#include <algorithm>
#include <utility>

PosArray::PosArray(const PosArray& other)
{
    pSegs.reserve(other.pSegs.size());
    for (size_t nSeg = 0; nSeg < other.pSegs.size(); ++nSeg) {
        pSegs.push_back(std::make_unique_for_overwrite<ElemPos[]>(other.SegmentSize(nSeg)));
        std::copy_n(other.pSegs[nSeg].get(), other.SegmentSize(nSeg), pSegs.back().get());
    }
    nSize = other.nSize;
}

void PosArray::Swap(PosArray& other) noexcept
{
    pSegs.swap(other.pSegs);
    std::swap(nSize, other.nSize);
}

void PosArray::Reset(size_t nEntries)
{
    nEntries = std::min<size_t>(nEntries, PA_SEGSIZE);
    if (nEntries <= static_cast<size_t>(nSize)) {
        return;
    }
    Clear();
    pSegs.push_back(std::make_unique_for_overwrite<ElemPos[]>(nEntries));
    nSize = static_cast<int>(nEntries);
}

void PosArray::Clear()
{
    pSegs.clear();
    nSize = 0;
}

void PosArray::Grow()
{
    if (nSize >= PA_SEGSIZE) {
        pSegs.push_back(std::make_unique_for_overwrite<ElemPos[]>(PA_SEGSIZE));
        nSize += PA_SEGSIZE;
        return;
    }
    constexpr int SMALL_SIZE = 4096;
    const int nNewSize = std::min<int>((nSize < SMALL_SIZE ? 4 : 2) * nSize, PA_SEGSIZE);
    auto pLarger = std::make_unique_for_overwrite<ElemPos[]>(static_cast<size_t>(nNewSize));
    std::copy_n(pSegs[0].get(), nSize, pLarger.get());
    pSegs[0] = std::move(pLarger);
    nSize = nNewSize;
}

size_t PosArray::SegmentSize(size_t nSeg) const
{
    return nSeg == 0 ? std::min<size_t>(static_cast<size_t>(nSize), PA_SEGSIZE)
                     : static_cast<size_t>(PA_SEGSIZE);
}
