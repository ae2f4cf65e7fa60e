#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>

#include "Server/Acceptor.h"
#include "Server/Connection.h"
#include "Server/Device.h"
#include "Server/PcapFile.h"

namespace simulated_decoder {

// Accepts up to 64 hosts at a time and keeps their connections. Context, device and capture outlive it; runs
// on the context's thread. The destructor closes all connections.
class Server {
public:
    // Listens on return. Throws ListenError, with a text for the user, on failure.
    Server(asio::io_context& context, Device& device, PcapFile& capture, const std::string& host,
           std::uint16_t port);
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    std::uint16_t Port() const { return m_acceptor.Port(); }
    // Notifies every logged-in host.
    void Notify(const ChannelChange& change);
    // Switches a fault of the device, for connected hosts too. Returns an empty string on success, else a
    // one-line reason.
    std::string SwitchFault(std::string_view spec, bool on);
    std::vector<HostStatus> Hosts() const;
    // Address and port as numbers.
    std::string Where() const { return m_acceptor.Where(); }

private:
    // At this fault's period, as long as it is active.
    void FlapChannels();
    void TurnChannels();
    void Welcome(asio::ip::tcp::socket socket);

    Device& m_device;
    PcapFile& m_capture;
    asio::steady_timer m_flapTimer;
    std::map<int, std::shared_ptr<Connection>> m_connections;
    int m_lastNumber = 0;
    // A handler that is already due runs without an error even after its timer is gone; it checks this first.
    const std::shared_ptr<int> m_life = std::make_shared<int>();
    Acceptor m_acceptor;
};

} // namespace simulated_decoder
