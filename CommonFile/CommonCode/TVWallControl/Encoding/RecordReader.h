#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <list>
#include <memory>
#include <string>
#include <type_traits>

#include "Wipe.h"

// Decodes the host's bytes into a record, step by step, and never reads past their end. The first thing that
// does not fit makes the reader fail; it then reads nothing more, so one check at the end is enough. The
// bytes are borrowed.
class CRecordReader {
public:
    CRecordReader(const char* pData, unsigned int nLen) : m_pData(pData), m_nLeft(pData == nullptr ? 0 : nLen)
    {
    }

    // A record that is given no bytes at all is left as it was.
    static constexpr bool ClearsWithoutData() { return false; }

    bool IsGood() const { return m_bGood; }
    // False when the plain fields are to be dropped.
    bool KeepsHead() const { return true; }

    // Plain fields that follow each other without gaps, each with its own width: all of them, or none when
    // too few bytes are left for all.
    template <class... Field>
    void Plain(Field&... field)
    {
        static_assert((std::is_trivially_copyable_v<Field> && ...));
        if (Has((uint64_t{sizeof(Field)} + ...))) {
            (Copy(field), ...);
        }
    }

    // A list of records. Nothing is created when the bytes left cannot hold nCount empty items; a bad item
    // ends the list; the items before it are kept. A negative count is an empty list: the host counts some
    // lists in signed bytes.
    template <class Count, class Item>
    void List(Count nCount, std::list<std::shared_ptr<Item>>& items)
    {
        if (!HasItems<Item>(nCount)) {
            return;
        }
        for (Count i = 0; i < nCount && ReadItem(items); ++i) {
        }
    }

    // A list of images: plain structures that travel whole.
    template <class Count, class Image>
    void ImageList(Count nCount, std::list<std::shared_ptr<Image>>& images)
    {
        static_assert(std::is_trivially_copyable_v<Image>);
        if (!Has(Total(nCount, sizeof(Image)))) {
            return;
        }
        for (Count i = 0; i < nCount; ++i) {
            Copy(*images.emplace_back(MakeShared<Image>()));
        }
    }

    // A text that takes all remaining bytes.
    void Rest(std::string& text)
    {
        if (m_bGood) {
            text.assign(m_pData, m_nLeft);
            Skip(m_nLeft);
        }
    }

protected:
    unsigned int GetLeft() const { return m_nLeft; }

    template <class Item, class Count>
    bool HasItems(Count nCount)
    {
        return Has(Total(nCount, Item{}.GetLength()));
    }

    template <class Item>
    bool ReadItem(std::list<std::shared_ptr<Item>>& items)
    {
        if (!ReadCutItem(items)) {
            items.pop_back();
        }
        return m_bGood;
    }

    // The same, but keeps a bad item with what was read of it.
    template <class Item>
    bool ReadCutItem(std::list<std::shared_ptr<Item>>& items)
    {
        const auto& item = items.emplace_back(MakeShared<Item>());
        m_bGood = item->SetData(m_pData, m_nLeft) && m_bGood;
        Skip(item->GetLength());
        return m_bGood;
    }

    void Fail() { m_bGood = false; }

private:
    // Some records hold passwords.
    template <class Part>
    static std::shared_ptr<Part> MakeShared()
    {
        return std::allocate_shared<Part>(TWipingAllocator<Part>());
    }

    template <class Count>
    static uint64_t Total(Count nCount, size_t nItemLen)
    {
        return nCount > 0 ? static_cast<uint64_t>(nCount) * nItemLen : 0;
    }

    bool Has(uint64_t nLen)
    {
        m_bGood = m_bGood && nLen <= m_nLeft;
        return m_bGood;
    }

    template <class Field>
    void Copy(Field& field)
    {
        std::memcpy(&field, m_pData, sizeof(Field));
        Skip(sizeof(Field));
    }

    void Skip(unsigned int nLen)
    {
        nLen = std::min(nLen, m_nLeft);
        m_pData += nLen;
        m_nLeft -= nLen;
    }

    const char* m_pData;
    unsigned int m_nLeft;
    bool m_bGood = true;
};

// For records that are cleared even when there are no bytes at all.
class CClearingReader : public CRecordReader {
public:
    static constexpr bool ClearsWithoutData() { return true; }

    using CRecordReader::CRecordReader;
};

// For records whose count is only an upper bound: a list that ends early, between two items, is good.
class COpenListReader : public CRecordReader {
public:
    using CRecordReader::CRecordReader;

    template <class Count, class Item>
    void List(Count nCount, std::list<std::shared_ptr<Item>>& items)
    {
        for (Count i = 0; i < nCount && GetLeft() > 0 && ReadItem(items); ++i) {
        }
    }
};

// For records that may be cut anywhere: everything present is read. An item keeps its complete fields; an
// image is kept only when complete. Missing bytes still make the reader fail.
class CCutListReader : public CRecordReader {
public:
    static constexpr bool ClearsWithoutData() { return true; }

    using CRecordReader::CRecordReader;

    template <class Count, class Item>
    void List(Count nCount, std::list<std::shared_ptr<Item>>& items)
    {
        Count i = 0;
        for (; i < nCount && GetLeft() > 0; ++i) {
            ReadCutItem(items);
        }
        if (i < nCount) {
            Fail();
        }
    }

    template <class Count, class Image>
    void ImageList(Count nCount, std::list<std::shared_ptr<Image>>& images)
    {
        const Count nWhole = std::min<Count>(nCount, GetLeft() / sizeof(Image));
        CRecordReader::ImageList(nWhole, images);
        if (nWhole < nCount) {
            Fail();
        }
    }
};

// For records whose plain fields depend on the count among them: they are dropped when the bytes cannot hold
// the announced list, but kept when one of its items is bad.
class CCheckedHeadReader : public CRecordReader {
public:
    using CRecordReader::CRecordReader;

    bool KeepsHead() const { return m_bHoldsList; }

    template <class Count, class Item>
    void List(Count nCount, std::list<std::shared_ptr<Item>>& items)
    {
        m_bHoldsList = HasItems<Item>(nCount);
        CRecordReader::List(nCount, items);
    }

private:
    bool m_bHoldsList = true;
};

// Reads a record without lists from a payload; false, with the image untouched, when the payload is shorter.
template <class Image>
bool ReadImage(const char* pData, unsigned int nLen, Image& image)
{
    CRecordReader reader(pData, nLen);
    reader.Plain(image);
    return reader.IsGood();
}
