#include "Server.h"

#include <sstream>
#include <utility>

#include <spdlog/spdlog.h>

namespace simulated_decoder {

namespace {

using asio::ip::tcp;

constexpr std::size_t kMaxConnections = 64;
// After an accept that failed, most likely for want of file descriptors.
constexpr std::chrono::milliseconds kAcceptRetry{100};

template <typename Endpoint>
std::string Text(const Endpoint& endpoint)
{
    std::ostringstream text;
    text << endpoint;
    return text.str();
}

} // namespace

Server::Server(asio::io_context& context, Device& device, const std::string& host, std::uint16_t port)
    : m_context(context), m_device(device), m_acceptor(context), m_retryTimer(context), m_flapTimer(context)
{
    try {
        Listen(host, port);
    } catch (const std::system_error& error) {
        throw ListenError("cannot listen on " + host + ":" + std::to_string(port) + ": " +
                          error.code().message());
    }
    Accept();
    if (const auto period = device.ActiveFaults().flapEvery; period.count() != 0) {
        FlapChannels(period);
    }
}

Server::~Server()
{
    for (const auto& [number, connection] : std::exchange(m_connections, {})) {
        connection->Close("the decoder stops");
    }
}

std::string Server::Where() const { return Text(m_acceptor.local_endpoint()); }

void Server::Notify(const ChannelChange& change)
{
    if (!change.list && !change.states) {
        return;
    }
    const auto connections = m_connections; // a connection that closes leaves the original
    for (const auto& [number, connection] : connections) {
        connection->Notify(change);
    }
}

void Server::FlapChannels(std::chrono::milliseconds period)
{
    m_flapTimer.expires_after(period);
    m_flapTimer.async_wait([this, period](const std::error_code& cancelled) {
        if (!cancelled) {
            m_device.TurnChannels();
            Notify({.list = false, .states = true});
            FlapChannels(period);
        }
    });
}

void Server::Listen(const std::string& host, std::uint16_t port)
{
    tcp::resolver resolver(m_context);
    const auto found =
        resolver.resolve(host, std::to_string(port), tcp::resolver::passive | tcp::resolver::numeric_service);
    const tcp::endpoint endpoint = found.begin()->endpoint();
    m_acceptor.open(endpoint.protocol());
    m_acceptor.set_option(tcp::acceptor::reuse_address(true));
    m_acceptor.bind(endpoint);
    m_acceptor.listen();
}

void Server::Accept()
{
    m_acceptor.async_accept([this](const std::error_code& error, tcp::socket socket) {
        if (!error) {
            Welcome(std::move(socket));
            Accept();
            return;
        }
        if (error == asio::error::operation_aborted) {
            return;
        }
        spdlog::error("cannot accept a host: {}", error.message());
        m_retryTimer.expires_after(kAcceptRetry);
        m_retryTimer.async_wait([this](const std::error_code& cancelled) {
            if (!cancelled) {
                Accept();
            }
        });
    });
}

void Server::Welcome(tcp::socket socket)
{
    std::error_code error;
    const tcp::endpoint peer = socket.remote_endpoint(error);
    if (error) {
        return; // gone again
    }
    if (m_connections.size() >= kMaxConnections) {
        spdlog::warn("{} turned away: {} hosts are connected", Text(peer), kMaxConnections);
        return;
    }
    const int number = ++m_lastNumber;
    spdlog::info("host {}: connected from {}", number, Text(peer));
    const auto connection = std::make_shared<Connection>(std::move(socket), number, m_device,
                                                         [this](int closed) { m_connections.erase(closed); });
    m_connections.emplace(number, connection);
    connection->Start();
}

} // namespace simulated_decoder
