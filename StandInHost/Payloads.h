#pragma once
// The host's records as they travel to the plug-in: little-endian, without padding.

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace standin_host {

// Appends little-endian numbers and blocks.
class CByteWriter {
public:
    CByteWriter& U16(uint16_t nValue) { return Number(nValue, 2); }
    CByteWriter& U32(uint32_t nValue) { return Number(nValue, 4); }
    CByteWriter& I32(int32_t nValue) { return Number(static_cast<uint32_t>(nValue), 4); }
    CByteWriter& Zeros(std::size_t nCount);
    // The text in a field of nSize bytes, filled up with zeros; the text must be shorter than the field.
    CByteWriter& Text(const std::string& strText, std::size_t nSize);

    std::vector<uint8_t> Take() { return std::move(m_bytes); }

private:
    CByteWriter& Number(uint32_t nValue, int nBytes);

    std::vector<uint8_t> m_bytes;
};

// A canvas window to create or to split, in wall coordinates.
struct SWindow {
    uint32_t nID;
    uint32_t nX, nY, nWidth, nHeight;
    uint32_t nLayer;
    std::vector<uint32_t> osdIds; // one for each sub-window; their number is the split mode
};

// A canvas window's new place.
struct SWindowMove {
    int32_t nID;
    int32_t nX, nY, nWidth, nHeight;
};

std::vector<uint8_t> CreateRecord(const std::vector<SWindow>& windows);
std::vector<uint8_t> MoveRecord(const std::vector<SWindowMove>& moves);
std::vector<uint8_t> DeleteRecord(const std::vector<uint32_t>& ids);
std::vector<uint8_t> RaiseRecord(uint32_t nID);

// The record behind the head of the option commands: option type and record length.
std::vector<uint8_t> OptionPayload(uint32_t nOptType, const std::vector<uint8_t>& record);

// Longest account name and password, in bytes: the record's fields hold a terminating zero too.
inline constexpr std::size_t kMaxCredential = 63;

std::vector<uint8_t> LoginRecord(const std::string& strUser, const std::string& strPassword);

} // namespace standin_host
