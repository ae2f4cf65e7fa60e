#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include <asio/ip/tcp.hpp>

#include "Server/PcapFile.h"

namespace simulated_decoder {

// Writes the traffic of one TCP connection to a capture file. Addresses, ports, bytes and times are real; the
// packets are made up, since a program does not see the kernel's: one for each read and write, between a
// textbook opening and close. Acknowledgements travel with the data.
class CapturedConnection {
public:
    enum class Side { Host, Decoder };

    // Captures the opening. The file must outlive this object.
    CapturedConnection(PcapFile& file, const asio::ip::tcp::endpoint& host,
                       const asio::ip::tcp::endpoint& decoder);
    CapturedConnection(CapturedConnection&&) = default;
    CapturedConnection(const CapturedConnection&) = delete;

    // Captures what this side has sent to the other.
    void Sent(Side from, std::string_view bytes);

    // Captures the close, this side first. Nothing is captured from then on.
    void End(Side first);

private:
    // One end of the connection, as it appears in packets.
    struct Peer {
        std::string hardware; // address in the Ethernet header
        std::string address;  // 4 bytes, or 16 for IPv6
        std::uint16_t port = 0;
        std::uint32_t sequence = 0; // sequence number of its next byte; wraps around
    };

    // A packet with this payload, which must fit an IP packet.
    void WritePacket(Side from, unsigned int flags, std::string_view payload);

    Peer& Of(Side side) { return m_peers[side == Side::Host ? 0 : 1]; }

    PcapFile& m_file;
    std::array<Peer, 2> m_peers;
    bool m_open = true;
};

} // namespace simulated_decoder
