#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include <asio/io_context.hpp>

#include "Server/Device.h"
#include "Server/Server.h"

namespace simulated_decoder {

// Serves the page to up to 32 connections of browsers at the same time. Runs on the context's thread, and
// waits for no browser there: one that takes too long to ask, or to take what it asked for, or that asks with
// more than 64 KiB, is hung up on.
class PageServer {
public:
    // Listens when it returns, and watches the device. ListenError, with a text for the user, when that
    // cannot be done. `requestTime` is what a browser has to send a request. Context, device and hosts
    // outlive it.
    PageServer(asio::io_context& context, Device& device, Server& hosts, const std::string& host,
               std::uint16_t port, std::chrono::milliseconds requestTime = std::chrono::seconds(5));
    // On the context's thread, or when that has ended.
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
