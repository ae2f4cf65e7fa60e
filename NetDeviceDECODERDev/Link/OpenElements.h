#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "Link/MessageNodes.h"

// The open elements during a scan, outermost first, found by name in constant time. A few need no allocation;
// beyond those, blocks of levels are added as the nesting deepens, and kept.
template <class Text>
class COpenElements {
public:
    // Levels that are followed: as many as the 16 bits of a level in CMarkupSTL can tell apart.
    static constexpr size_t MAX_LEVELS = ElemPos::EP_LEVMASK;

    explicit COpenElements(Text& text) : m_text(text) {}
    COpenElements(const COpenElements&) = delete;
    COpenElements& operator=(const COpenElements&) = delete;

    size_t Size() const { return m_nSize; }

    // False at the deepest level that is followed. Throws std::bad_alloc.
    bool Push(const SMessageName& name)
    {
        if (m_nSize == MAX_LEVELS) {
            return false;
        }
        if (m_nSize == m_nCapacity) {
            Grow((m_text.Size() - name.nStart) / SHORTEST_TAG + 1);
        }
        ++m_nSize;
        Level(m_nSize) = {static_cast<uint32_t>(name.nStart), static_cast<uint32_t>(name.nHash),
                          static_cast<uint16_t>(name.nHash >> 32U), 0};
        Link(m_nSize);
        return true;
    }

    // Closes the innermost element of that name and all within it. Returns its level, 1 for the outermost; 0
    // when none of that name is open.
    size_t Pop(const SMessageName& name)
    {
        size_t nLevel = Bucket(static_cast<uint32_t>(name.nHash));
        while (nLevel != 0 && !HasName(Level(nLevel), name)) {
            nLevel = Level(nLevel).nBelow;
        }
        while (nLevel != 0 && m_nSize >= nLevel) {
            const SLevel& top = Level(m_nSize--);
            Bucket(top.nHash) = top.nBelow;
        }
        return nLevel;
    }

private:
    static constexpr size_t FEW = 64;
    static constexpr size_t BLOCK = 256;
    static constexpr size_t LEVELS_PER_BUCKET = 4;
    static constexpr size_t SHORTEST_TAG = 3;

    struct SLevel {
        uint32_t nName; // offset in the message
        uint32_t nHash;
        uint16_t nHashAbove; // the hash's next 16 bits
        uint16_t nBelow;     // the next outer level of the same bucket, 0 for none
    };
    static_assert(sizeof(SLevel) == 12);

    SLevel& Level(size_t nLevel)
    {
        const size_t n = nLevel - 1;
        return n < FEW ? m_few[n] : m_blocks[(n - FEW) / BLOCK][(n - FEW) % BLOCK];
    }
    uint16_t& Bucket(uint32_t nHash) { return m_pBuckets[nHash & (m_nBuckets - 1)]; }

    void Link(size_t nLevel)
    {
        SLevel& level = Level(nLevel);
        level.nBelow = std::exchange(Bucket(level.nHash), static_cast<uint16_t>(nLevel));
    }

    // Compares the bytes only when the hashes are equal.
    bool HasName(const SLevel& level, const SMessageName& name) const
    {
        if (level.nHash != static_cast<uint32_t>(name.nHash) ||
            level.nHashAbove != static_cast<uint16_t>(name.nHash >> 32U)) {
            return false;
        }
        size_t n = 0;
        while (n < name.nLen && m_text.At(level.nName + n) == m_text.At(name.nStart + n)) {
            ++n;
        }
        return n == name.nLen && EndsXmlName(m_text.At(level.nName + n));
    }

    // Adds a block; no more than nMost levels follow.
    void Grow(size_t nMost)
    {
        if (m_blocks.empty()) {
            MakeBuckets(std::min(FEW + nMost, MAX_LEVELS));
        }
        const size_t nBlock = std::min(nMost, BLOCK);
        m_blocks.push_back(std::make_unique_for_overwrite<SLevel[]>(nBlock));
        m_nCapacity += nBlock;
    }

    void MakeBuckets(size_t nLevels)
    {
        const size_t nBuckets = std::max(FEW, std::bit_floor(nLevels / LEVELS_PER_BUCKET));
        m_pBucketsOwned = std::make_unique<uint16_t[]>(nBuckets);
        m_blocks.reserve(nLevels / BLOCK + 1);
        m_pBuckets = m_pBucketsOwned.get();
        m_nBuckets = nBuckets;
        for (size_t nLevel = 1; nLevel <= m_nSize; ++nLevel) {
            Link(nLevel);
        }
    }

    Text& m_text;
    std::array<SLevel, FEW> m_few;
    std::array<uint16_t, FEW> m_fewBuckets{};
    std::vector<std::unique_ptr<SLevel[]>> m_blocks; // of BLOCK levels; the last may hold all remaining ones
    std::unique_ptr<uint16_t[]> m_pBucketsOwned;
    uint16_t* m_pBuckets = m_fewBuckets.data(); // the innermost level of each
    size_t m_nBuckets = FEW;                    // a power of two
    size_t m_nCapacity = FEW;
    size_t m_nSize = 0;
};
