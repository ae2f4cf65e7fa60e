#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include <asio/ip/tcp.hpp>

#include "Server/PcapFile.h"

namespace simulated_decoder {

// Tells a capture file what goes over one TCP connection. Addresses, ports, bytes and times are the real
// ones; the packets around them are made up, since a program does not see those of the kernel: one for each
// read and write, between an opening and an end as the book has them. Acknowledgements travel with the data.
class CapturedConnection {
public:
    enum class Side { Host, Decoder };

    // Captures the opening. The file must outlive what is captured here.
    CapturedConnection(PcapFile& file, const asio::ip::tcp::endpoint& host,
                       const asio::ip::tcp::endpoint& decoder);
    CapturedConnection(CapturedConnection&&) = default;
    CapturedConnection(const CapturedConnection&) = delete;

    // What this side has sent to the other.
    void Sent(Side from, std::string_view bytes);

    // This side closes, and the other one after it. Nothing is captured from then on.
    void End(Side first);

private:
    // One end of the connection, as packets name it.
    struct Peer {
        std::string hardware; // address in the Ethernet header
        std::string address;  // 4 bytes, or 16 of IPv6
        std::uint16_t port = 0;
        std::uint32_t sequence = 0; // number of the next byte that it sends; wraps around
    };

    // A packet with this payload, which an IP packet can hold.
    void WritePacket(Side from, unsigned int flags, std::string_view payload);

    Peer& Of(Side side) { return m_peers[side == Side::Host ? 0 : 1]; }

    PcapFile& m_file;
    std::array<Peer, 2> m_peers;
    bool m_open = true;
};

} // namespace simulated_decoder
