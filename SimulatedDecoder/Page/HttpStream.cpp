#include "Page/HttpStream.h"

#include <algorithm>
#include <system_error>

#include <poll.h>
#include <sys/socket.h>

namespace simulated_decoder {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kWriteTime{10000}; // until the next bytes are taken
constexpr std::size_t kMaxRequest = 65536;

void Tell(const asio::ip::tcp::endpoint& endpoint, std::string& ip, int& port)
{
    ip = endpoint.address().to_string();
    port = endpoint.port();
}

} // namespace

HttpStream::HttpStream(asio::ip::tcp::socket& socket, milliseconds requestTime)
    : m_socket(socket), m_handle(socket.native_handle()), m_readBefore(Clock::now() + requestTime)
{
}

bool HttpStream::WaitFor(short event, milliseconds patience) const
{
    pollfd waiting{m_handle, event, 0};
    int found = 0;
    do {
        found = poll(&waiting, 1, static_cast<int>(std::max<milliseconds::rep>(patience.count(), 0)));
    } while (found < 0 && errno == EINTR);
    return found > 0;
}

bool HttpStream::is_readable() const
{
    return HasInput() ||
           WaitFor(POLLIN, std::chrono::duration_cast<milliseconds>(m_readBefore - Clock::now()));
}

bool HttpStream::is_writable() const { return WaitFor(POLLOUT, kWriteTime); }

ssize_t HttpStream::read(char* data, std::size_t size)
{
    if (!HasInput()) {
        if (m_received >= kMaxRequest || Clock::now() >= m_readBefore || !is_readable()) {
            return -1;
        }
        const ssize_t length = recv(m_handle, m_input.data(), m_input.size(), MSG_DONTWAIT);
        if (length <= 0) {
            return length;
        }
        m_begin = 0;
        m_end = static_cast<std::size_t>(length);
        m_received += m_end;
    }
    const std::size_t length = std::min(size, m_end - m_begin);
    std::copy_n(m_input.data() + m_begin, length, data);
    m_begin += length;
    return static_cast<ssize_t>(length);
}

ssize_t HttpStream::write(const char* data, std::size_t size)
{
    return is_writable() ? send(m_handle, data, size, MSG_DONTWAIT | MSG_NOSIGNAL) : -1;
}

void HttpStream::get_remote_ip_and_port(std::string& ip, int& port) const
{
    std::error_code gone;
    Tell(m_socket.remote_endpoint(gone), ip, port);
}

void HttpStream::get_local_ip_and_port(std::string& ip, int& port) const
{
    std::error_code gone;
    Tell(m_socket.local_endpoint(gone), ip, port);
}

} // namespace simulated_decoder
