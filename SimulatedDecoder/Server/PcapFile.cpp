#include "Server/PcapFile.h"

#include <chrono>

namespace simulated_decoder {

namespace {

// The order of these bytes tells readers the file's byte order, their value the unit of its times.
constexpr std::uint32_t kMagicMicroseconds = 0xA1B2C3D4;
constexpr std::uint32_t kLongestPacket = 262144; // longer than any that can occur
constexpr std::uint32_t kEthernet = 1;

std::string FileHead()
{
    std::string head;
    AppendNumber(head, kMagicMicroseconds, 4);
    AppendNumber(head, 2, 2); // version 2.4
    AppendNumber(head, 4, 2);
    AppendNumber(head, 0, 8); // times are UTC, of unknown accuracy
    AppendNumber(head, kLongestPacket, 4);
    AppendNumber(head, kEthernet, 4);
    return head;
}

} // namespace

void AppendNumber(std::string& bytes, std::uint64_t number, std::size_t size)
{
    for (std::size_t shift = 8 * size; shift > 0;) {
        shift -= 8;
        bytes += static_cast<char>(number >> shift & 0xFFU);
    }
}

PcapFile::PcapFile(const std::string& path) : m_file(path, FileHead()) {}

void PcapFile::Write(std::string_view packet)
{
    if (!IsOpen()) {
        return;
    }
    using namespace std::chrono;
    const auto now = duration_cast<microseconds>(system_clock::now().time_since_epoch()).count();
    std::string record;
    AppendNumber(record, static_cast<std::uint64_t>(now / 1000000), 4);
    AppendNumber(record, static_cast<std::uint64_t>(now % 1000000), 4);
    AppendNumber(record, packet.size(), 4); // bytes in the file
    AppendNumber(record, packet.size(), 4); // bytes that the packet had
    record += packet;
    m_file.Write(record);
}

} // namespace simulated_decoder
