#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <system_error>

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>

#include "Tools/Common/SocketFaults.h"

namespace simulated_decoder {

class ListenError : public std::runtime_error {
public:
    ListenError(const std::string& host, std::uint16_t port, const std::system_error& cause)
        : std::runtime_error("cannot listen on " + host + ":" + std::to_string(port) + ": " +
                             tools::SocketFault(cause.code()))
    {
    }
};

// The address to listen at. Throws std::system_error when it does not exist.
asio::ip::tcp::endpoint Resolve(asio::io_context& context, const std::string& host, std::uint16_t port);

// Listens at one address and hands over accepted connections, on the context's thread, until destroyed.
class Acceptor {
public:
    using WelcomeFunction = std::function<void(asio::ip::tcp::socket socket)>;

    // Listens on return; port 0 picks any free one. Throws ListenError, with a text for the user, on failure.
    Acceptor(asio::io_context& context, const std::string& host, std::uint16_t port, WelcomeFunction welcome);
    Acceptor(const Acceptor&) = delete;
    Acceptor& operator=(const Acceptor&) = delete;

    std::uint16_t Port() const { return m_acceptor.local_endpoint().port(); }
    // Address and port as numbers.
    std::string Where() const;

private:
    void Listen(const asio::ip::tcp::endpoint& endpoint);
    void Accept();

    asio::ip::tcp::acceptor m_acceptor;
    asio::steady_timer m_retryTimer;
    WelcomeFunction m_welcome;
    // A handler that is already due runs without an error even after the acceptor is gone; it checks this
    // first.
    const std::shared_ptr<int> m_life = std::make_shared<int>();
};

// Address and port as numbers.
std::string Text(const asio::ip::tcp::endpoint& endpoint);

} // namespace simulated_decoder
