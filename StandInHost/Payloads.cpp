#include "Payloads.h"

#include <cstddef>

#include "TvwallProtocol.h"

namespace standin_host {

namespace {

// The two identifiers of wall and plan, which the decoder is not told, and the number of items.
CByteWriter ListRecord(std::size_t nItems)
{
    CByteWriter writer;
    writer.Zeros(2 * sizeof(GUID)).U32(static_cast<uint32_t>(nItems));
    return writer;
}

} // namespace

CByteWriter& CByteWriter::Zeros(std::size_t nCount)
{
    m_bytes.resize(m_bytes.size() + nCount);
    return *this;
}

CByteWriter& CByteWriter::Text(const std::string& strText, std::size_t nSize)
{
    m_bytes.insert(m_bytes.end(), strText.begin(), strText.end());
    return Zeros(nSize - strText.size());
}

CByteWriter& CByteWriter::Number(uint32_t nValue, int nBytes)
{
    for (int i = 0; i < nBytes; ++i) {
        m_bytes.push_back(static_cast<uint8_t>(nValue >> (8 * i)));
    }
    return *this;
}

std::vector<uint8_t> CreateRecord(const std::vector<SWindow>& windows)
{
    CByteWriter writer = ListRecord(windows.size());
    for (const SWindow& window : windows) {
        writer.U32(window.nID).U32(window.nX).U32(window.nY).U32(window.nWidth).U32(window.nHeight);
        writer.U16(0).U16(0).U16(0).U16(0); // the absolute rectangle
        writer.U32(static_cast<uint32_t>(window.osdIds.size())).U32(window.nLayer);
        writer.I32(-1); // no sub-window is zoomed
        uint32_t nIndex = 0;
        for (const uint32_t nOsdId : window.osdIds) {
            writer.U32(nIndex++).U32(nOsdId);
        }
    }
    return writer.Take();
}

std::vector<uint8_t> MoveRecord(const std::vector<SWindowMove>& moves)
{
    CByteWriter writer = ListRecord(moves.size());
    for (const SWindowMove& move : moves) {
        writer.I32(move.nID).I32(move.nX).I32(move.nY).I32(move.nWidth).I32(move.nHeight);
    }
    return writer.Take();
}

std::vector<uint8_t> DeleteRecord(const std::vector<uint32_t>& ids)
{
    CByteWriter writer = ListRecord(ids.size());
    for (const uint32_t nID : ids) {
        writer.U32(nID);
    }
    return writer.Take();
}

std::vector<uint8_t> RaiseRecord(uint32_t nID)
{
    return CByteWriter().Zeros(2 * sizeof(GUID)).U32(nID).Take();
}

std::vector<uint8_t> OptionPayload(uint32_t nOptType, const std::vector<uint8_t>& record)
{
    auto payload = CByteWriter().U32(nOptType).U32(static_cast<uint32_t>(record.size())).Take();
    payload.insert(payload.end(), record.begin(), record.end());
    return payload;
}

std::vector<uint8_t> LoginRecord(const std::string& strUser, const std::string& strPassword)
{
    using Record = ORVA_NET_PROTOCOL::_kest_net_login_info;
    return CByteWriter()
        .Zeros(offsetof(Record, username))
        .Text(strUser, sizeof(Record::username))
        .Text(strPassword, sizeof(Record::password))
        .Zeros(sizeof(Record) - offsetof(Record, IP))
        .Take();
}

} // namespace standin_host
