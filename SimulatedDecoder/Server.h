#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>

#include "Connection.h"
#include "Device.h"

namespace simulated_decoder {

class ListenError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Accepts hosts, up to 64 at the same time, and keeps their connections. Context and device outlive it; runs
// on the context's thread. The destructor closes all connections.
class Server {
public:
    // Listens when it returns. ListenError, with a text for the user, when that cannot be done.
    Server(asio::io_context& context, Device& device, const std::string& host, std::uint16_t port);
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    std::uint16_t Port() const { return m_acceptor.local_endpoint().port(); }
    // Tells every host that is logged in.
    void Notify(const ChannelChange& change);
    // Address and port as numbers.
    std::string Where() const;

private:
    void Listen(const std::string& host, std::uint16_t port);
    void Accept();
    void FlapChannels(std::chrono::milliseconds period);
    void Welcome(asio::ip::tcp::socket socket);

    asio::io_context& m_context;
    Device& m_device;
    asio::ip::tcp::acceptor m_acceptor;
    asio::steady_timer m_retryTimer;
    asio::steady_timer m_flapTimer;
    std::map<int, std::shared_ptr<Connection>> m_connections;
    int m_lastNumber = 0;
};

} // namespace simulated_decoder
