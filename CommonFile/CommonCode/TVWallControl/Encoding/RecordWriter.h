#pragma once

#include <cstdint>
#include <cstring>
#include <list>
#include <memory>
#include <string>
#include <type_traits>

// Adds up the bytes that a record takes on the wire.
class CRecordLength {
public:
    uint64_t GetLength() const { return m_nLen; }

    template <class... Field>
    void Plain(const Field&...)
    {
        m_nLen += (sizeof(Field) + ...);
    }

    template <class Count, class Item>
    void List(Count, const std::list<std::shared_ptr<Item>>& items)
    {
        for (const auto& item : items) {
            m_nLen += item->GetLength();
        }
    }

    template <class Count, class Image>
    void ImageList(Count, const std::list<std::shared_ptr<Image>>& images)
    {
        m_nLen += images.size() * sizeof(Image);
    }

    void Rest(const std::string& text) { m_nLen += text.size(); }

private:
    uint64_t m_nLen = 0;
};

// Encodes a record into a buffer of known size and never writes past its end: what does not fit is left out,
// with everything after it. Counts are written as the fields hold them, lists with the items that they hold.
class CRecordWriter {
public:
    CRecordWriter(char* pData, unsigned int nSize) : m_pData(pData), m_nSize(pData == nullptr ? 0 : nSize) {}

    // Bytes written so far.
    unsigned int GetLength() const { return m_nLen; }

    template <class... Field>
    void Plain(const Field&... field)
    {
        static_assert((std::is_trivially_copyable_v<Field> && ...));
        (Copy(field), ...);
    }

    template <class Count, class Item>
    void List(Count, const std::list<std::shared_ptr<Item>>& items)
    {
        for (const auto& item : items) {
            if (!Has(item->GetLength())) {
                return;
            }
            char* pItem = m_pData + m_nLen;
            m_nLen += item->GetData(pItem);
        }
    }

    template <class Count, class Image>
    void ImageList(Count, const std::list<std::shared_ptr<Image>>& images)
    {
        for (const auto& image : images) {
            Copy(*image);
        }
    }

    void Rest(const std::string& text) { CopyBytes(text.data(), text.size()); }

private:
    bool Has(size_t nLen)
    {
        m_bGood = m_bGood && nLen <= m_nSize - m_nLen;
        return m_bGood;
    }

    template <class Field>
    void Copy(const Field& field)
    {
        CopyBytes(&field, sizeof(Field));
    }

    void CopyBytes(const void* pBytes, size_t nLen)
    {
        if (Has(nLen)) {
            std::memcpy(m_pData + m_nLen, pBytes, nLen);
            m_nLen += static_cast<unsigned int>(nLen);
        }
    }

    char* m_pData;
    unsigned int m_nSize;
    unsigned int m_nLen = 0;
    bool m_bGood = true;
};
