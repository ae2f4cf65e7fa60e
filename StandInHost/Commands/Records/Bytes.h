#pragma once
// The host's records as bytes: little-endian, without padding.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "HostTypes.h"

namespace standin_host {

inline constexpr std::size_t kScreenName = 256; // bytes of the field, in the command and in the answer

// Where in a record a password is.
struct Span {
    std::size_t offset;
    std::size_t size;
};

struct Record {
    std::vector<uint8_t> bytes;
    std::vector<Span> secrets;
};

// Appends numbers and blocks.
class ByteWriter {
public:
    // Counts and identifiers have been checked against their fields' ranges.
    ByteWriter& U16(int64_t value) { return Number(static_cast<uint64_t>(value), 2); }
    ByteWriter& U32(int64_t value) { return Number(static_cast<uint64_t>(value), 4); }
    ByteWriter& I16(int64_t value) { return Number(static_cast<uint64_t>(value), 2); }
    ByteWriter& I32(int64_t value) { return Number(static_cast<uint64_t>(value), 4); }
    ByteWriter& U64(uint64_t value) { return Number(value, 8); }
    ByteWriter& Count(std::size_t count) { return Number(count, 4); }
    ByteWriter& Guid(const GUID& guid);
    ByteWriter& Zeros(std::size_t count);
    // The text in a field of size bytes, padded with zeros; the text must be shorter than the field.
    ByteWriter& Text(const std::string& text, std::size_t size);
    // The same; the record remembers that this is a password.
    ByteWriter& Secret(const std::string& text, std::size_t size);
    // Appends another record.
    ByteWriter& Append(const Record& record);

    Record Take() { return std::move(m_record); }

private:
    ByteWriter& Number(uint64_t value, int bytes);

    Record m_record;
};

// Takes numbers and texts off the front. Once something is missing, everything reads as zero or empty and
// Failed is true.
class ByteReader {
public:
    explicit ByteReader(std::span<const uint8_t> bytes) : m_left(bytes) {}

    uint16_t U16() { return static_cast<uint16_t>(Number(2)); }
    uint32_t U32() { return static_cast<uint32_t>(Number(4)); }
    int32_t I32() { return static_cast<int32_t>(Number(4)); }
    GUID Guid();
    // A field of size bytes, up to its first zero byte.
    std::string Text(std::size_t size);
    // All that is left, up to its first zero byte.
    std::string Rest() { return Text(m_left.size()); }

    bool Failed() const { return m_failed; }
    void Fail();

private:
    std::span<const uint8_t> Block(std::size_t size);
    uint64_t Number(std::size_t byteCount);

    std::span<const uint8_t> m_left;
    bool m_failed = false;
};

} // namespace standin_host
