#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include <asio/io_context.hpp>

#include "Server/Device.h"
#include "Server/Server.h"

namespace simulated_decoder {

// Serves the page to up to 32 browser connections at a time. Runs on the context's thread without waiting for
// any browser: one that takes too long to send its request or to take the response, or whose request exceeds
// 64 KiB, is disconnected.
class PageServer {
public:
    // Listens on return, and watches the device. Throws ListenError, with a text for the user, on failure.
    // `requestTime` is how long a browser may take to send a request. Context, device and hosts outlive it.
    PageServer(asio::io_context& context, Device& device, Server& hosts, const std::string& host,
               std::uint16_t port, std::chrono::milliseconds requestTime = std::chrono::seconds(5));
    // On the context's thread, or after it has ended.
    ~PageServer();
    PageServer(const PageServer&) = delete;
    PageServer& operator=(const PageServer&) = delete;

    // Address and port as numbers.
    const std::string& Where() const;

private:
    class Impl;
    std::shared_ptr<Impl> m_impl;
};

} // namespace simulated_decoder
