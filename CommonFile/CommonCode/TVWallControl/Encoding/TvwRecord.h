#pragma once
// What all records of the host's TV-wall model share.
//
// On the wire a record is its fields in order, little-endian, each with its own width and without alignment
// gaps. Every list is announced by a count among the fields; the items follow after all fields, list by list.

#include <cstdint>
#include <cstring>
#include <limits>
#include <list>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>

#include "Encoding/RecordReader.h"
#include "Encoding/RecordWriter.h"

using tint8 = int8_t;
using tuint8 = uint8_t;
using tint16 = int16_t;
using tuint16 = uint16_t;
using tint32 = int32_t;
using tuint32 = uint32_t;
using tuint64 = unsigned long long; // not uint64_t: a request's text takes this type

// The origin that a record's texts name.
struct RecordSite {
    const char* szSource;
    int nLine;
};

// Takes one zero-terminated text of a record, to be copied during the call, and its origin. Called on the
// thread that uses the record; throws nothing.
using RecordOutput = void(const char* szText, const char* szSource, int nLine);

// Where records write: pDump takes their dumps, pReport the reports of VerifyData. Null, as at first, is
// nowhere. Any thread, at any time; it holds for the whole process. The plug-in's are the host's log.
void SetRecordOutput(RecordOutput* pDump, RecordOutput* pReport);

// Writes one text of at most 4095 characters to where dumps go.
[[gnu::format(printf, 2, 3)]] void DumpText(const RecordSite& site, const char* szFormat, ...);

// Writes a title line, then each item.
template <class Item>
void DumpList(const RecordSite& site, const char* szTitle, const std::list<std::shared_ptr<Item>>& items)
{
    DumpText(site, "%s", szTitle);
    for (const auto& item : items) {
        item->Dump();
    }
}

// Empties lists and zeroes fields.
class CRecordClearer {
public:
    template <class... Field>
    void Plain(Field&... field)
    {
        (std::memset(static_cast<void*>(&field), 0, sizeof(Field)), ...);
    }
    template <class Count, class Items>
    void List(Count, Items& items)
    {
        items.clear();
    }
    template <class Count, class Items>
    void ImageList(Count, Items& items)
    {
        items.clear();
    }
    void Rest(std::string& text) { text.clear(); }
};

// Makes counts agree with lists; each count that does not is reported.
class CRecordVerifier {
public:
    explicit CRecordVerifier(const RecordSite& site) : m_site(site) {}

    template <class... Field>
    void Plain(const Field&...)
    {
    }
    template <class Count, class Items>
    void List(Count& nCount, Items& items)
    {
        ImageList(nCount, items);
        for (const auto& item : items) {
            item->VerifyData();
        }
    }
    template <class Count, class Items>
    void ImageList(Count& nCount, const Items& items)
    {
        if (nCount < 0 || static_cast<uint64_t>(nCount) != items.size()) {
            Report();
            nCount = static_cast<Count>(items.size());
        }
    }
    void Rest(const std::string& /*text*/) {}

private:
    void Report() const;

    RecordSite m_site;
};

// The common operations. A record derives from this with itself as the argument and defines `SITE`, `Dump`
// and one template `Fields(self, visitor)` that names its fields in wire order: everything before the lists
// in one `Plain`, then each `List` (or `ImageList`) with its count, or a text that takes the `Rest`. Reading,
// writing, measuring, clearing and verifying all follow that one list. Reader defines how a payload that ends
// before the record does is read. A record belongs to one thread at a time.
template <class Record, class Reader = CRecordReader>
class CTvwRecord {
public:
    // Decodes from nLen bytes. False, with nothing changed unless the reader says so, for null or no bytes;
    // false for bytes that end before the record does, with the complete parts kept. Bytes after the record
    // are ignored.
    bool SetData(const char* pData, unsigned int nLen)
    {
        if (pData == nullptr || nLen == 0) {
            if (Reader::ClearsWithoutData()) {
                Self().ClearData();
            }
            return false;
        }
        Self().ClearData();
        Reader reader(pData, nLen);
        try {
            Record::Fields(Self(), reader);
        } catch (const std::bad_alloc&) {
            return false;
        }
        if (!reader.KeepsHead()) {
            Self().ClearData();
        }
        return reader.IsGood();
    }

    // Encodes into pData, which has room for at least GetLength() bytes. Returns the bytes written, 0 for
    // null.
    unsigned int GetData(char*& pData) const
    {
        CRecordWriter writer(pData, Self().GetLength());
        Record::Fields(Self(), writer);
        return writer.GetLength();
    }

    // Encodes into a new string or vector of bytes. Throws std::length_error for a record whose length no
    // field can hold.
    template <class Bytes = std::string>
    Bytes Encode() const
    {
        if (Measure() > std::numeric_limits<unsigned int>::max()) {
            throw std::length_error("a record of 4 GiB or more");
        }
        Bytes bytes(Self().GetLength(), 0);
        char* pData = reinterpret_cast<char*>(bytes.data());
        GetData(pData);
        return bytes;
    }

    // Bytes that the record takes on the wire with its lists' current items.
    unsigned int GetLength() const { return static_cast<unsigned int>(Measure()); }

    // Sets every count to the size of its list; reports one "ASSERT" for each that differed.
    void VerifyData()
    {
        CRecordVerifier verifier(Record::SITE);
        Record::Fields(Self(), verifier);
    }

    void ClearData()
    {
        CRecordClearer clearer;
        Record::Fields(Self(), clearer);
    }

private:
    uint64_t Measure() const
    {
        CRecordLength length;
        Record::Fields(Self(), length);
        return length.GetLength();
    }
    Record& Self() { return static_cast<Record&>(*this); }
    const Record& Self() const { return static_cast<const Record&>(*this); }
};
