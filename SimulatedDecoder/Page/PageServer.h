#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <thread>

#include <asio/io_context.hpp>
#include <asio/ip/tcp.hpp>

#include "Page/PageRoutes.h"
#include "Server/Acceptor.h"
#include "Server/DeviceFeed.h"

namespace simulated_decoder {

// Serves the page to up to 32 browsers' connections at the same time, each on a thread of its own, so that
// none has to wait for another. Runs on the context's thread; context, feed, device and hosts outlive it. The
// destructor hangs up on all of them.
class PageServer {
public:
    // Listens when it returns. ListenError, with a text for the user, when that cannot be done.
    // `requestTime` is what a browser has to send a request.
    PageServer(asio::io_context& context, DeviceFeed& feed, Device& device, Server& hosts,
               const std::string& host, std::uint16_t port,
               std::chrono::milliseconds requestTime = std::chrono::seconds(5));
    ~PageServer();
    PageServer(const PageServer&) = delete;
    PageServer& operator=(const PageServer&) = delete;

    // Address and port as numbers.
    std::string Where() const { return m_acceptor.Where(); }

private:
    struct Visitor {
        asio::ip::tcp::socket socket;
        std::thread thread;
    };

    void Welcome(asio::ip::tcp::socket socket);
    void Serve(int number, asio::ip::tcp::socket& socket);
    void Dismiss(int number);

    asio::io_context& m_context;
    DeviceFeed& m_feed;
    std::chrono::milliseconds m_requestTime;
    PageRoutes m_routes;
    std::map<int, Visitor> m_visitors;
    int m_lastNumber = 0;
    Acceptor m_acceptor;
};

} // namespace simulated_decoder
