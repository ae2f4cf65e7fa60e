#include "Server/CapturedConnection.h"

#include <algorithm>
#include <chrono>

namespace simulated_decoder {

namespace {

constexpr unsigned int kFin = 0x01;
constexpr unsigned int kSyn = 0x02;
constexpr unsigned int kPush = 0x08;
constexpr unsigned int kAck = 0x10;

constexpr std::size_t kIpv4HeaderLength = 20;
constexpr std::size_t kTcpHeaderLength = 20;
// The most that fits with both headers into the 65535 bytes of an IP packet.
constexpr std::size_t kMaxSegment = 65535 - kIpv4HeaderLength - kTcpHeaderLength;

constexpr unsigned int kTcp = 6;
constexpr unsigned int kHopLimit = 64;
// The largest segment (kMaxSegment); no operation; a window scale of 2^14. In a capture of reads and writes
// acknowledgements come late, and until then a small window would look full.
constexpr std::string_view kSynOptions("\x02\x04\xff\xd7\x01\x03\x03\x0e", 8);

// The checksum of IPv4 and TCP headers; 0 over data that includes a correct one.
std::uint16_t Checksum(std::string_view bytes)
{
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const std::uint32_t byte = static_cast<unsigned char>(bytes[i]);
        sum += i % 2 == 0 ? byte << 8U : byte;
        sum = (sum & 0xFFFFU) + (sum >> 16U);
    }
    return static_cast<std::uint16_t>(~sum);
}

void PutChecksum(std::string& bytes, std::size_t offset, std::uint16_t sum)
{
    bytes[offset] = static_cast<char>(sum >> 8U);
    bytes[offset + 1] = static_cast<char>(sum & 0xFFU);
}

std::string AddressBytes(const asio::ip::address& address)
{
    const auto text = [](const auto& bytes) { return std::string(bytes.begin(), bytes.end()); };
    if (address.is_v4()) {
        return text(address.to_v4().to_bytes());
    }
    // A host that connected over IPv4 to an IPv6 socket.
    if (address.to_v6().is_v4_mapped()) {
        return text(asio::ip::make_address_v4(asio::ip::v4_mapped, address.to_v6()).to_bytes());
    }
    return text(address.to_v6().to_bytes());
}

std::string IpHeader(const std::string& from, const std::string& to, std::size_t length)
{
    std::string header;
    if (from.size() == 4) {
        AppendNumber(header, 0x4500, 2); // version 4, header of 5 words
        AppendNumber(header, kIpv4HeaderLength + length, 2);
        AppendNumber(header, 0x00004000, 4); // never fragmented, so that it needs no identification
        AppendNumber(header, kHopLimit, 1);
        AppendNumber(header, kTcp, 1);
        AppendNumber(header, 0, 2);
        header += from + to;
        PutChecksum(header, 10, Checksum(header));
        return header;
    }
    AppendNumber(header, 0x60000000, 4);
    AppendNumber(header, length, 2);
    AppendNumber(header, kTcp, 1);
    AppendNumber(header, kHopLimit, 1);
    return header + from + to;
}

} // namespace

CapturedConnection::CapturedConnection(PcapFile& file, const asio::ip::tcp::endpoint& host,
                                       const asio::ip::tcp::endpoint& decoder)
    : m_file(file),
      m_peers{Peer{std::string("\x02\0\0\0\0\x01", 6), AddressBytes(host.address()), host.port()},
              Peer{std::string("\x02\0\0\0\0\x02", 6), AddressBytes(decoder.address()), decoder.port()}}
{
    // From a clock of 4 us ticks, so that a reused port does not look like the old connection.
    const auto now = std::chrono::steady_clock::now().time_since_epoch() / std::chrono::microseconds(4);
    for (Peer& peer : m_peers) {
        peer.sequence = static_cast<std::uint32_t>(now);
    }
    WritePacket(Side::Host, kSyn, {});
    WritePacket(Side::Decoder, kSyn | kAck, {});
    WritePacket(Side::Host, kAck, {});
}

void CapturedConnection::Sent(Side from, std::string_view bytes)
{
    while (m_open && !bytes.empty()) {
        WritePacket(from, kPush | kAck, bytes.substr(0, kMaxSegment));
        bytes.remove_prefix(std::min(bytes.size(), kMaxSegment));
    }
}

void CapturedConnection::End(Side first)
{
    if (m_open) {
        const Side second = first == Side::Host ? Side::Decoder : Side::Host;
        WritePacket(first, kFin | kAck, {});
        WritePacket(second, kFin | kAck, {});
        WritePacket(first, kAck, {});
        m_open = false;
    }
}

void CapturedConnection::WritePacket(Side from, unsigned int flags, std::string_view payload)
{
    if (!m_file.IsOpen()) {
        return;
    }
    Peer& source = Of(from);
    const Peer& target = Of(from == Side::Host ? Side::Decoder : Side::Host);
    const std::string_view options = (flags & kSyn) != 0 ? kSynOptions : std::string_view();

    std::string pseudoHeader = source.address + target.address;
    AppendNumber(pseudoHeader, kTcp, 2);
    AppendNumber(pseudoHeader, kTcpHeaderLength + options.size() + payload.size(), 2);
    std::string segment = pseudoHeader;
    AppendNumber(segment, source.port, 2);
    AppendNumber(segment, target.port, 2);
    AppendNumber(segment, source.sequence, 4);
    AppendNumber(segment, (flags & kAck) != 0 ? target.sequence : 0, 4);
    AppendNumber(segment, (kTcpHeaderLength + options.size()) / 4 << 12U | flags, 2);
    AppendNumber(segment, 0xFFFF, 2); // window
    AppendNumber(segment, 0, 4);      // checksum, urgent pointer
    segment += options;
    segment += payload;
    PutChecksum(segment, pseudoHeader.size() + 16, Checksum(segment));
    segment.erase(0, pseudoHeader.size());

    std::string packet = target.hardware + source.hardware;
    AppendNumber(packet, source.address.size() == 4 ? 0x0800 : 0x86DD, 2);
    packet += IpHeader(source.address, target.address, segment.size());
    packet += segment;
    m_file.Write(packet);

    const bool counts = (flags & (kSyn | kFin)) != 0; // SYN and FIN count as one byte
    source.sequence += static_cast<std::uint32_t>(payload.size()) + (counts ? 1U : 0U);
}

} // namespace simulated_decoder
