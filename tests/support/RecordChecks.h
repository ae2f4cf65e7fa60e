#pragma once
// What holds for every record of the host's model.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Encoding/TvwRecord.h"
#include "FakeHost.h"
#include "LinkTexts.h"

// Through the base: one record's own SetData says nothing.
template <class Record, class Reader>
bool Decode(CTvwRecord<Record, Reader>& record, const char* data, size_t len)
{
    return record.SetData(data, static_cast<unsigned int>(len));
}

template <class Record>
bool Decode(Record& record, const std::string& bytes)
{
    const std::vector<char> exact(bytes.begin(), bytes.end()); // the sanitizer sees reads behind its end
    return Decode(record, exact.data(), exact.size());
}

template <class Record>
std::string Encode(const Record& record)
{
    std::string bytes(record.GetLength(), '\xEE');
    char* data = bytes.data();
    EXPECT_EQ(record.GetData(data), bytes.size());
    EXPECT_EQ(data, bytes.data());
    return bytes;
}

template <class Record>
std::string Zeros()
{
    return std::string(Record().GetLength(), '\0');
}

// Decodes, measures and encodes; then cuts the payload and the room for it everywhere, and makes it longer,
// which changes nothing. A record begins with zeros; clearing leaves them, unless other bytes are given.
template <class Record>
void RoundTrips(const std::string& bytes, const std::string& cleared = Zeros<Record>())
{
    SCOPED_TRACE(typeid(Record).name());
    Record record;
    char* none = nullptr;
    EXPECT_EQ(Encode(record), Zeros<Record>());
    ASSERT_TRUE(Decode(record, bytes));
    EXPECT_EQ(Encode(record), bytes);
    EXPECT_EQ(record.GetData(none), 0U);
    for (size_t n = 0; n < bytes.size(); ++n) {
        Record cut;
        EXPECT_FALSE(Decode(cut, bytes.substr(0, n))) << n;
        const std::string read = Encode(cut);
        EXPECT_TRUE(read == cleared || bytes.starts_with(read.substr(0, read.find_last_not_of('\0') + 1)))
            << n;

        std::vector<char> room(n);
        CRecordWriter writer(room.data(), static_cast<unsigned int>(n));
        Record::Fields(record, writer);
        EXPECT_TRUE(bytes.starts_with(std::string(room.data(), writer.GetLength()))) << n;
    }
    ASSERT_TRUE(Decode(record, bytes + "more"));
    EXPECT_EQ(Encode(record), bytes);
    record.ClearData();
    EXPECT_EQ(Encode(record), cleared);
    EXPECT_FALSE(Decode(record, nullptr, 100));
}

// What the log says of it.
template <class Record>
std::string Dumped(const std::string& bytes)
{
    Record record;
    EXPECT_TRUE(Decode(record, bytes));
    fake_host::Reset();
    record.Dump();
    std::string texts;
    for (const auto& log : fake_host::Logs()) {
        EXPECT_EQ(log.level, fake_host::LogLevel::Normal);
        texts += log.text;
    }
    return texts;
}

// No count that the bytes after it cannot hold creates anything; some of these wrap around in 32 bits.
template <class... Record>
void RefusesCounts(const std::string& head, const std::string& items)
{
    for (const unsigned long count : {4UL, 0x40000000UL, 0x33333334UL, 0x20000000UL, 0x08000000UL, -1UL}) {
        const auto refuses = [&](auto record) {
            EXPECT_FALSE(Decode(record, Bytes().Text(head).U32(count).Text(items))) << typeid(record).name();
            EXPECT_LE(record.GetLength(), head.size() + 4) << typeid(record).name();
        };
        (refuses(Record()), ...);
    }
}
