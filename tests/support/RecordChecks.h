#pragma once
// What holds for every record of the host's model.

#include <string>
#include <vector>

#include <gtest/gtest.h>

template <class Record>
bool Decode(Record& record, const std::string& bytes)
{
    const std::vector<char> exact(bytes.begin(), bytes.end()); // the sanitizer sees reads behind its end
    return record.SetData(exact.data(), static_cast<unsigned int>(exact.size()));
}

template <class Record>
std::string Encode(const Record& record)
{
    std::string bytes(record.GetLength(), '\xEE');
    char* pData = bytes.data();
    EXPECT_EQ(record.GetData(pData), bytes.size());
    return bytes;
}

// Decodes, measures and encodes; then cuts the payload everywhere, and makes it longer, which changes
// nothing. Clearing leaves the bytes of an empty record, unless others are given.
template <class Record>
void RoundTrips(const std::string& bytes, const std::string& cleared = Encode(Record()))
{
    SCOPED_TRACE(typeid(Record).name());
    Record record;
    ASSERT_TRUE(Decode(record, bytes));
    EXPECT_EQ(Encode(record), bytes);
    for (size_t n = 0; n < bytes.size(); ++n) {
        EXPECT_FALSE(Decode(record, bytes.substr(0, n))) << n;
    }
    ASSERT_TRUE(Decode(record, bytes + "more"));
    EXPECT_EQ(Encode(record), bytes);
    record.ClearData();
    EXPECT_EQ(Encode(record), cleared);
    EXPECT_FALSE(record.SetData(nullptr, 100));
}
