#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

#include "Link/MessageNodes.h"

// The elements that are open while a message is scanned, outermost first, found by name in constant time. A
// few take no memory; from then on there is one allocation for as many as the message can hold.
template <class Text>
class COpenElements {
public:
    // Levels that are followed; so many can be told apart by the 16 bits that CMarkupSTL has for them, too.
    static constexpr size_t MAX_LEVELS = ElemPos::EP_LEVMASK;

    explicit COpenElements(Text& text) : m_text(text) {}
    COpenElements(const COpenElements&) = delete;
    COpenElements& operator=(const COpenElements&) = delete;

    size_t Size() const { return m_nSize; }

    // False when there are as many as are followed. Throws std::bad_alloc.
    bool Push(const SMessageName& name)
    {
        if (m_nSize == m_nCapacity && !Grow(name.nStart)) {
            return false;
        }
        m_pLevels[m_nSize++] = {static_cast<uint32_t>(name.nStart), static_cast<uint32_t>(name.nHash),
                                static_cast<uint16_t>(name.nHash >> 32U), 0};
        Link(m_nSize);
        return true;
    }

    // Closes the innermost element of that name and all within. Answers its level, 1 for the outermost; 0
    // when none of that name is open.
    size_t Pop(const SMessageName& name)
    {
        size_t nLevel = Bucket(static_cast<uint32_t>(name.nHash));
        while (nLevel != 0 && !HasName(m_pLevels[nLevel - 1], name)) {
            nLevel = m_pLevels[nLevel - 1].nBelow;
        }
        while (nLevel != 0 && m_nSize >= nLevel) {
            const SLevel& top = m_pLevels[--m_nSize];
            Bucket(top.nHash) = top.nBelow;
        }
        return nLevel;
    }

private:
    static constexpr size_t FEW = 64;
    static constexpr size_t SHORTEST_TAG = 3;

    struct SLevel {
        uint32_t nName; // offset in the message
        uint32_t nHash;
        uint16_t nHashAbove; // the hash's next 16 bits
        uint16_t nBelow;     // the next outer level of the same bucket, 0 for none
    };
    static_assert(sizeof(SLevel) == 12);

    uint16_t& Bucket(uint32_t nHash) { return m_pBuckets[nHash & (m_nBuckets - 1)]; }

    void Link(size_t nLevel)
    {
        SLevel& level = m_pLevels[nLevel - 1];
        level.nBelow = std::exchange(Bucket(level.nHash), static_cast<uint16_t>(nLevel));
    }

    // Looks at the bytes only where the hashes are the same.
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

    bool Grow(size_t nAt)
    {
        if (m_nSize == MAX_LEVELS) {
            return false;
        }
        const size_t nMore = (m_text.Size() - nAt) / SHORTEST_TAG + 1;
        m_nCapacity = std::min(m_nSize + nMore, MAX_LEVELS);
        auto pLevels = std::make_unique_for_overwrite<SLevel[]>(m_nCapacity);
        m_nBuckets = std::bit_floor(m_nCapacity);
        m_pBucketsOwned = std::make_unique<uint16_t[]>(m_nBuckets);
        m_pBuckets = m_pBucketsOwned.get();
        std::copy_n(m_pLevels, m_nSize, pLevels.get());
        m_pLevelsOwned = std::move(pLevels);
        m_pLevels = m_pLevelsOwned.get();
        for (size_t nLevel = 1; nLevel <= m_nSize; ++nLevel) {
            Link(nLevel);
        }
        return true;
    }

    Text& m_text;
    std::array<SLevel, FEW> m_few;
    std::array<uint16_t, FEW> m_fewBuckets{};
    std::unique_ptr<SLevel[]> m_pLevelsOwned;
    std::unique_ptr<uint16_t[]> m_pBucketsOwned;
    SLevel* m_pLevels = m_few.data();
    uint16_t* m_pBuckets = m_fewBuckets.data(); // the innermost level of each
    size_t m_nBuckets = FEW;                    // a power of two
    size_t m_nCapacity = FEW;
    size_t m_nSize = 0;
};
