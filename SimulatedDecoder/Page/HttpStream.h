#pragma once

#include <array>
#include <chrono>
#include <cstddef>
#include <string>

#include <asio/ip/tcp.hpp>
#include <httplib.h>

namespace simulated_decoder {

// A browser's socket as the HTTP library reads and writes it, on a thread of its own. A browser that takes
// too long to ask or to take what it asked for, or that sends more than 64 KiB, is as good as gone; so is
// every one whose socket has been shut down.
class HttpStream : public httplib::Stream {
public:
    // The socket outlives the stream. `requestTime` is for all of a request.
    HttpStream(asio::ip::tcp::socket& socket, std::chrono::milliseconds requestTime);

    bool is_readable() const override;
    bool is_writable() const override;
    ssize_t read(char* data, std::size_t size) override;
    ssize_t write(const char* data, std::size_t size) override;
    void get_remote_ip_and_port(std::string& ip, int& port) const override;
    void get_local_ip_and_port(std::string& ip, int& port) const override;
    socket_t socket() const override { return m_handle; }

private:
    using Clock = std::chrono::steady_clock;

    bool WaitFor(short event, std::chrono::milliseconds patience) const;
    bool HasInput() const { return m_begin < m_end; }

    asio::ip::tcp::socket& m_socket;
    int m_handle;
    Clock::time_point m_readBefore;
    std::array<char, 4096> m_input{};
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
    std::size_t m_received = 0;
};

} // namespace simulated_decoder
