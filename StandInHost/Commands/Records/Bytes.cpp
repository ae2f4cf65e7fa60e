#include "Commands/Records/Bytes.h"

#include <algorithm>
#include <cstring>

namespace standin_host {

CByteWriter& CByteWriter::Guid(const GUID& guid)
{
    const auto* pBytes = reinterpret_cast<const uint8_t*>(&guid);
    m_record.bytes.insert(m_record.bytes.end(), pBytes, pBytes + sizeof guid);
    return *this;
}

CByteWriter& CByteWriter::Zeros(std::size_t nCount)
{
    m_record.bytes.resize(m_record.bytes.size() + nCount);
    return *this;
}

CByteWriter& CByteWriter::Text(const std::string& strText, std::size_t nSize)
{
    m_record.bytes.insert(m_record.bytes.end(), strText.begin(), strText.end());
    return Zeros(nSize - strText.size());
}

CByteWriter& CByteWriter::Secret(const std::string& strText, std::size_t nSize)
{
    m_record.secrets.push_back({m_record.bytes.size(), nSize});
    return Text(strText, nSize);
}

CByteWriter& CByteWriter::Append(const SRecord& record)
{
    for (const SSpan& secret : record.secrets) {
        m_record.secrets.push_back({m_record.bytes.size() + secret.nOffset, secret.nSize});
    }
    m_record.bytes.insert(m_record.bytes.end(), record.bytes.begin(), record.bytes.end());
    return *this;
}

CByteWriter& CByteWriter::Number(uint64_t nValue, int nBytes)
{
    for (int i = 0; i < nBytes; ++i) {
        m_record.bytes.push_back(static_cast<uint8_t>(nValue >> (8 * i)));
    }
    return *this;
}

GUID CByteReader::Guid()
{
    GUID guid{};
    const auto block = Block(sizeof guid);
    if (!block.empty()) {
        std::memcpy(&guid, block.data(), sizeof guid);
    }
    return guid;
}

std::string CByteReader::Text(std::size_t nSize)
{
    const auto block = Block(nSize);
    return {block.begin(), std::find(block.begin(), block.end(), uint8_t{0})};
}

void CByteReader::Fail()
{
    m_bFailed = true;
    m_left = {};
}

std::span<const uint8_t> CByteReader::Block(std::size_t nSize)
{
    if (nSize > m_left.size()) {
        Fail();
        return {};
    }
    const auto block = m_left.first(nSize);
    m_left = m_left.subspan(nSize);
    return block;
}

uint64_t CByteReader::Number(std::size_t nBytes)
{
    const auto block = Block(nBytes);
    uint64_t nValue = 0;
    for (std::size_t i = block.size(); i > 0; --i) {
        nValue = nValue << 8 | block[i - 1];
    }
    return nValue;
}

} // namespace standin_host
