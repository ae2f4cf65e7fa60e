#include "Host/Connection.h"

#include <utility>
#include <vector>

#include <asio/buffer.hpp>
#include <asio/post.hpp>
#include <asio/write.hpp>

#include "Host/HostEvents.h"
#include "Host/HostLog.h"
#include "HostFunctions.h"
#include "SocketDataObserver.h"
#include "Tools/Common/SocketFaults.h"

namespace standin_host {

namespace {

constexpr std::size_t kReadSize = 64UL * 1024;

thread_local unsigned int lastError = 0;

} // namespace

unsigned int LastSocketError() { return lastError; }

Connection::Connection(asio::ip::tcp::socket socket, ConnectionSettings settings)
    : m_socket(std::move(socket)), m_settings(std::move(settings))
{
    asio::error_code ignored;
    m_socket.non_blocking(true, ignored);
}

void Connection::SetObserver(CSocketDataObserver* observer, void* context)
{
    const TMutexGuard guard(m_receiveLock);
    m_observer = observer;
    m_context = context;
}

void Connection::Start(int handle)
{
    {
        const TMutexGuard guard(m_receiveLock);
        m_handle = handle;
        m_started = true;
    }
    asio::post(m_socket.get_executor(), [self = shared_from_this()] { self->Read(); });
}

void Connection::Stop()
{
    const TMutexGuard guard(m_receiveLock);
    m_started = false;
}

bool Connection::Send(std::string_view bytes)
{
    const TMutexGuard guard(m_sendLock);
    if (!m_open || m_refuseSends) {
        lastError = kSocketErrorNotConnected;
        return false;
    }
    if (m_queued != 0 && m_queued + bytes.size() > kMaxQueued) {
        lastError = NET_SOCKET_ERROR_NOBUFS;
        return false;
    }
    if (m_settings.trace != nullptr) {
        m_settings.trace->Sent(bytes);
    }
    if (m_settings.exchanges != nullptr) {
        m_settings.exchanges->Sent(bytes);
    }
    m_queue.emplace_back(bytes);
    m_queued += bytes.size();
    if (m_queue.size() == 1) {
        asio::post(m_socket.get_executor(), [self = shared_from_this()] { self->Write(); });
    }
    return true;
}

void Connection::RefuseSends()
{
    const TMutexGuard guard(m_sendLock);
    m_refuseSends = true;
}

void Connection::Fail(const std::string& reason)
{
    {
        const TMutexGuard guard(m_sendLock);
        // Reported before the first send can fail, so that the lost link is not taken for a missing reply.
        if (m_open && m_settings.events != nullptr) {
            m_settings.events->ReportLost(reason);
        }
        m_open = false;
    }
    CloseSocket();
}

void Connection::Close()
{
    {
        const TMutexGuard guard(m_sendLock);
        m_open = false;
    }
    CloseSocket();
}

void Connection::CloseSocket()
{
    asio::post(m_socket.get_executor(), [self = shared_from_this()] {
        asio::error_code ignored;
        self->m_socket.close(ignored);
    });
}

void Connection::Read()
{
    if (m_reading) {
        return;
    }
    m_reading = true;
    m_socket.async_wait(
        asio::socket_base::wait_read,
        [self = shared_from_this()](const asio::error_code& error) { self->OnReadable(error); });
}

void Connection::OnReadable(asio::error_code error)
{
    // One buffer for all connections: a host with a thousand of them cannot afford one for each. Allocated by
    // the reading thread; an array would take memory in every thread.
    static thread_local std::vector<char> chunk(kReadSize);
    m_reading = false;
    const std::size_t len = error ? 0 : m_socket.read_some(asio::buffer(chunk), error);
    if (error == asio::error::would_block) {
        Read();
    } else if (error) {
        Fail(error == asio::error::eof ? "the decoder closed the connection" : tools::SocketFault(error));
    } else {
        OnRead({chunk.data(), len});
    }
}

void Connection::OnRead(std::string_view bytes)
{
    if (m_settings.trace != nullptr) {
        m_settings.trace->Received(bytes);
    }
    if (m_settings.exchanges != nullptr) {
        m_settings.exchanges->Received(bytes);
    }
    const TMutexGuard guard(m_receiveLock);
    m_kept.append(bytes);
    if (!m_started) {
        return;
    }
    if (m_settings.bufferedReceive) {
        DeliverBuffered();
    } else {
        DeliverDirect();
    }
    if (m_kept.size() > kMaxKept) {
        Fail("the decoder sent a message of more than 64 MiB");
        return;
    }
    Read();
}

void Connection::DeliverDirect()
{
    if (m_kept.size() < m_wanted) {
        return;
    }
    unsigned int need = 0;
    const std::size_t consumed = CallObserver(m_kept, &need);
    m_kept.erase(0, consumed);
    m_wanted = m_kept.size() + need;
}

void Connection::DeliverBuffered()
{
    CallObserver(m_kept, nullptr);
    m_kept.clear();
}

unsigned int Connection::CallObserver(std::string_view bytes, unsigned int* needLen)
{
    if (m_observer == nullptr) {
        return 0;
    }
    try {
        const unsigned int consumed = m_observer->OnSocketRecvData(
            m_handle, bytes.data(), static_cast<unsigned int>(bytes.size()), needLen, m_context);
        if (consumed <= bytes.size()) {
            return consumed;
        }
        Log(LogLevel::Error, "the observer consumed more bytes than it was given");
    } catch (const std::exception& error) {
        Log(LogLevel::Error, std::string("the observer threw an exception: ") + error.what());
    }
    return static_cast<unsigned int>(bytes.size());
}

void Connection::Write()
{
    asio::const_buffer buffer;
    {
        const TMutexGuard guard(m_sendLock);
        if (m_queue.empty()) {
            return;
        }
        buffer = asio::buffer(m_queue.front()); // stays in place until popped below
    }
    asio::async_write(m_socket, buffer,
                      [self = shared_from_this()](const asio::error_code& error, std::size_t) {
                          if (error) {
                              self->Fail("sending failed: " + tools::SocketFault(error));
                              return;
                          }
                          {
                              const TMutexGuard guard(self->m_sendLock);
                              self->m_queued -= self->m_queue.front().size();
                              self->m_queue.pop_front();
                          }
                          self->Write();
                      });
}

} // namespace standin_host
