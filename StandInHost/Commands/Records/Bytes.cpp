#include "Commands/Records/Bytes.h"

#include <algorithm>
#include <cstring>

namespace standin_host {

ByteWriter& ByteWriter::Guid(const GUID& guid)
{
    const auto* bytes = reinterpret_cast<const uint8_t*>(&guid);
    m_record.bytes.insert(m_record.bytes.end(), bytes, bytes + sizeof guid);
    return *this;
}

ByteWriter& ByteWriter::Zeros(std::size_t count)
{
    m_record.bytes.resize(m_record.bytes.size() + count);
    return *this;
}

ByteWriter& ByteWriter::Text(const std::string& text, std::size_t size)
{
    m_record.bytes.insert(m_record.bytes.end(), text.begin(), text.end());
    return Zeros(size - text.size());
}

ByteWriter& ByteWriter::Secret(const std::string& text, std::size_t size)
{
    m_record.secrets.push_back({m_record.bytes.size(), size});
    return Text(text, size);
}

ByteWriter& ByteWriter::Append(const Record& record)
{
    for (const Span& secret : record.secrets) {
        m_record.secrets.push_back({m_record.bytes.size() + secret.offset, secret.size});
    }
    m_record.bytes.insert(m_record.bytes.end(), record.bytes.begin(), record.bytes.end());
    return *this;
}

ByteWriter& ByteWriter::Number(uint64_t value, int bytes)
{
    for (int i = 0; i < bytes; ++i) {
        m_record.bytes.push_back(static_cast<uint8_t>(value >> (8 * i)));
    }
    return *this;
}

GUID ByteReader::Guid()
{
    GUID guid{};
    const auto block = Block(sizeof guid);
    if (!block.empty()) {
        std::memcpy(&guid, block.data(), sizeof guid);
    }
    return guid;
}

std::string ByteReader::Text(std::size_t size)
{
    const auto block = Block(size);
    return {block.begin(), std::find(block.begin(), block.end(), uint8_t{0})};
}

void ByteReader::Fail()
{
    m_failed = true;
    m_left = {};
}

std::span<const uint8_t> ByteReader::Block(std::size_t size)
{
    if (size > m_left.size()) {
        Fail();
        return {};
    }
    const auto block = m_left.first(size);
    m_left = m_left.subspan(size);
    return block;
}

uint64_t ByteReader::Number(std::size_t byteCount)
{
    const auto block = Block(byteCount);
    uint64_t value = 0;
    for (std::size_t i = block.size(); i > 0; --i) {
        value = value << 8 | block[i - 1];
    }
    return value;
}

} // namespace standin_host
