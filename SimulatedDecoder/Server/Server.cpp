#include "Server/Server.h"

#include <utility>

#include <spdlog/spdlog.h>

namespace simulated_decoder {

namespace {

using asio::ip::tcp;

constexpr std::size_t kMaxConnections = 64;
} // namespace

Server::Server(asio::io_context& context, Device& device, PcapFile& capture, const std::string& host,
               std::uint16_t port)
    : m_device(device),
      m_capture(capture),
      m_flapTimer(context),
      m_acceptor(context, host, port, [this](tcp::socket socket) { Welcome(std::move(socket)); })
{
    FlapChannels();
}

Server::~Server()
{
    try {
        for (const auto& [number, connection] : std::exchange(m_connections, {})) {
            connection->Close("the decoder stops");
        }
    } catch (const std::exception&) {
        // Without memory the other connections end without a line in the log.
    }
}

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

std::string Server::SwitchFault(std::string_view spec, bool on)
{
    std::string problem = m_device.SwitchFault(spec, on);
    if (!problem.empty()) {
        return problem;
    }
    for (const auto& [number, connection] : m_connections) {
        connection->ObeyFaults();
    }
    FlapChannels();
    return {};
}

std::vector<HostStatus> Server::Hosts() const
{
    std::vector<HostStatus> hosts;
    for (const auto& [number, connection] : m_connections) {
        hosts.push_back(connection->Status());
    }
    return hosts;
}

void Server::FlapChannels()
{
    m_flapTimer.cancel();
    const auto period = m_device.ActiveFaults().flapEvery;
    if (period.count() == 0) {
        if (m_device.Channels().IsOutage()) {
            TurnChannels();
        }
        return;
    }
    m_flapTimer.expires_after(period);
    m_flapTimer.async_wait([this, life = std::weak_ptr(m_life)](const std::error_code& cancelled) {
        if (!cancelled && !life.expired()) {
            TurnChannels();
            FlapChannels();
        }
    });
}

void Server::TurnChannels()
{
    m_device.TurnChannels();
    Notify({.list = false, .states = true});
}

void Server::Welcome(tcp::socket socket)
{
    std::error_code error;
    const tcp::endpoint peer = socket.remote_endpoint(error);
    const tcp::endpoint local = error ? tcp::endpoint() : socket.local_endpoint(error);
    if (error) {
        return; // gone again
    }
    if (m_connections.size() >= kMaxConnections) {
        spdlog::warn("{} turned away: {} hosts are connected", Text(peer), kMaxConnections);
        return;
    }
    const int number = ++m_lastNumber;
    spdlog::info("host {}: connected from {}", number, Text(peer));
    const auto connection = std::make_shared<Connection>(
        std::move(socket), number, m_device, CapturedConnection(m_capture, peer, local), [this](int closed) {
            m_connections.erase(closed);
            m_device.Changed();
        });
    m_connections.emplace(number, connection);
    connection->Start();
    m_device.Changed();
}

} // namespace simulated_decoder
