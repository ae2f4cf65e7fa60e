#include "Server/Acceptor.h"

#include <chrono>
#include <sstream>
#include <system_error>
#include <utility>

#include <spdlog/spdlog.h>

#include "Tools/Common/SocketFaults.h"

namespace simulated_decoder {

namespace {

using asio::ip::tcp;

// After a failed accept, most likely for lack of file descriptors.
constexpr std::chrono::milliseconds kAcceptRetry{100};

} // namespace

std::string Text(const tcp::endpoint& endpoint)
{
    std::ostringstream text;
    text << endpoint;
    return text.str();
}

tcp::endpoint Resolve(asio::io_context& context, const std::string& host, std::uint16_t port)
{
    tcp::resolver resolver(context);
    const auto found =
        resolver.resolve(host, std::to_string(port), tcp::resolver::passive | tcp::resolver::numeric_service);
    return found.begin()->endpoint();
}

Acceptor::Acceptor(asio::io_context& context, const std::string& host, std::uint16_t port,
                   WelcomeFunction welcome)
    : m_acceptor(context), m_retryTimer(context), m_welcome(std::move(welcome))
{
    try {
        Listen(Resolve(context, host, port));
    } catch (const std::system_error& error) {
        throw ListenError(host, port, error);
    }
    Accept();
}

std::string Acceptor::Where() const { return Text(m_acceptor.local_endpoint()); }

void Acceptor::Listen(const tcp::endpoint& endpoint)
{
    m_acceptor.open(endpoint.protocol());
    m_acceptor.set_option(tcp::acceptor::reuse_address(true));
    m_acceptor.bind(endpoint);
    m_acceptor.listen();
}

void Acceptor::Accept()
{
    m_acceptor.async_accept(
        [this, life = std::weak_ptr(m_life)](const std::error_code& error, tcp::socket socket) {
            if (life.expired()) {
                return;
            }
            if (!error) {
                m_welcome(std::move(socket));
                Accept();
                return;
            }
            if (error == asio::error::operation_aborted) {
                return;
            }
            spdlog::error("cannot accept a connection: {}", tools::SocketFault(error));
            m_retryTimer.expires_after(kAcceptRetry);
            m_retryTimer.async_wait([this, life](const std::error_code& cancelled) {
                if (!cancelled && !life.expired()) {
                    Accept();
                }
            });
        });
}

} // namespace simulated_decoder
