#pragma once
// The host's records as bytes: little-endian, without padding.

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "HostTypes.h"

namespace standin_host {

// Where a record holds a password.
struct SSpan {
    std::size_t nOffset;
    std::size_t nSize;
};

struct SRecord {
    std::vector<uint8_t> bytes;
    std::vector<SSpan> secrets;
};

// Appends numbers and blocks.
class CByteWriter {
public:
    // Counts and identifiers are checked against their fields before they come here.
    CByteWriter& U16(int64_t nValue) { return Number(static_cast<uint64_t>(nValue), 2); }
    CByteWriter& U32(int64_t nValue) { return Number(static_cast<uint64_t>(nValue), 4); }
    CByteWriter& I16(int64_t nValue) { return Number(static_cast<uint64_t>(nValue), 2); }
    CByteWriter& I32(int64_t nValue) { return Number(static_cast<uint64_t>(nValue), 4); }
    CByteWriter& U64(uint64_t nValue) { return Number(nValue, 8); }
    CByteWriter& Count(std::size_t nCount) { return Number(nCount, 4); }
    CByteWriter& Guid(const GUID& guid);
    CByteWriter& Zeros(std::size_t nCount);
    // The text in a field of nSize bytes, filled up with zeros; the text must be shorter than the field.
    CByteWriter& Text(const std::string& strText, std::size_t nSize);
    // The same, and the record remembers that a password stands there.
    CByteWriter& Secret(const std::string& strText, std::size_t nSize);
    // Another record behind what is there.
    CByteWriter& Append(const SRecord& record);

    SRecord Take() { return std::move(m_record); }

private:
    CByteWriter& Number(uint64_t nValue, int nBytes);

    SRecord m_record;
};

// Takes numbers and texts off the front. Once something was not there, everything reads as zero or empty and
// Failed says so.
class CByteReader {
public:
    explicit CByteReader(std::span<const uint8_t> bytes) : m_left(bytes) {}

    uint16_t U16() { return static_cast<uint16_t>(Number(2)); }
    uint32_t U32() { return static_cast<uint32_t>(Number(4)); }
    int32_t I32() { return static_cast<int32_t>(Number(4)); }
    GUID Guid();
    // A field of nSize bytes, up to its first zero.
    std::string Text(std::size_t nSize);
    // All that is left, up to its first zero.
    std::string Rest() { return Text(m_left.size()); }

    bool Failed() const { return m_bFailed; }
    void Fail();

private:
    std::span<const uint8_t> Block(std::size_t nSize);
    uint64_t Number(std::size_t nBytes);

    std::span<const uint8_t> m_left;
    bool m_bFailed = false;
};

} // namespace standin_host
