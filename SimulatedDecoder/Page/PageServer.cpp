#include "Page/PageServer.h"

#include <exception>
#include <system_error>
#include <utility>

#include <asio/post.hpp>
#include <spdlog/spdlog.h>

#include "Page/HttpStream.h"

namespace simulated_decoder {

namespace {

using asio::ip::tcp;

constexpr std::size_t kMaxVisitors = 32;

} // namespace

PageServer::PageServer(asio::io_context& context, DeviceFeed& feed, Device& device, Server& hosts,
                       const std::string& host, std::uint16_t port, std::chrono::milliseconds requestTime)
    : m_context(context),
      m_feed(feed),
      m_requestTime(requestTime),
      m_routes(feed, device, hosts, host),
      m_acceptor(context, host, port, [this](tcp::socket socket) { Welcome(std::move(socket)); })
{
}

PageServer::~PageServer()
{
    m_feed.Stop();
    for (auto& [number, visitor] : m_visitors) {
        std::error_code ignored;
        visitor.socket.shutdown(tcp::socket::shutdown_both, ignored);
    }
    for (auto& [number, visitor] : m_visitors) {
        visitor.thread.join();
    }
}

void PageServer::Welcome(tcp::socket socket)
{
    if (m_visitors.size() >= kMaxVisitors) {
        spdlog::warn("a browser turned away: {} connections of browsers are open", kMaxVisitors);
        return;
    }
    std::error_code ignored;
    socket.set_option(tcp::no_delay(true), ignored);
    const int number = ++m_lastNumber;
    Visitor& visitor = m_visitors.emplace(number, Visitor{std::move(socket), {}}).first->second;
    try {
        visitor.thread = std::thread([this, number, &visitor] { Serve(number, visitor.socket); });
    } catch (const std::system_error& error) {
        spdlog::error("a browser turned away: {}", error.what());
        m_visitors.erase(number);
    }
}

// On the visitor's thread, which uses the socket's number only.
void PageServer::Serve(int number, tcp::socket& socket)
{
    try {
        HttpStream stream(socket, m_requestTime);
        m_routes.Serve(stream);
    } catch (const std::exception& error) {
        spdlog::error("a browser's request failed: {}", error.what());
    }
    asio::post(m_context, [this, number] { Dismiss(number); });
}

void PageServer::Dismiss(int number)
{
    const auto visitor = m_visitors.find(number);
    visitor->second.thread.join();
    m_visitors.erase(visitor);
}

} // namespace simulated_decoder
