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

namespace standin_host {

namespace {

constexpr std::size_t kReadSize = 64UL * 1024;

thread_local unsigned int t_nLastError = 0;

} // namespace

unsigned int LastSocketError() { return t_nLastError; }

CConnection::CConnection(asio::ip::tcp::socket socket, SConnectionSettings settings)
    : m_socket(std::move(socket)), m_settings(std::move(settings))
{
    asio::error_code ignored;
    m_socket.non_blocking(true, ignored);
}

void CConnection::SetObserver(CSocketDataObserver* pObserver, void* pContext)
{
    const TMutexGuard guard(m_receiveLock);
    m_pObserver = pObserver;
    m_pContext = pContext;
}

void CConnection::Start(int nHandle)
{
    {
        const TMutexGuard guard(m_receiveLock);
        m_nHandle = nHandle;
        m_bStarted = true;
    }
    asio::post(m_socket.get_executor(), [self = shared_from_this()] { self->Read(); });
}

void CConnection::Stop()
{
    const TMutexGuard guard(m_receiveLock);
    m_bStarted = false;
}

bool CConnection::Send(std::string_view bytes)
{
    const TMutexGuard guard(m_sendLock);
    if (!m_bOpen || m_bRefuseSends) {
        t_nLastError = SOCKET_ERROR_NOT_CONNECTED;
        return false;
    }
    if (m_nQueued != 0 && m_nQueued + bytes.size() > kMaxQueued) {
        t_nLastError = NET_SOCKET_ERROR_NOBUFS;
        return false;
    }
    if (m_settings.pTrace != nullptr) {
        m_settings.pTrace->Sent(bytes);
    }
    m_queue.emplace_back(bytes);
    m_nQueued += bytes.size();
    if (m_queue.size() == 1) {
        asio::post(m_socket.get_executor(), [self = shared_from_this()] { self->Write(); });
    }
    return true;
}

void CConnection::RefuseSends()
{
    const TMutexGuard guard(m_sendLock);
    m_bRefuseSends = true;
}

void CConnection::Fail(const std::string& strReason)
{
    {
        const TMutexGuard guard(m_sendLock);
        // Reported before the first send can fail, so that nobody takes the lost link for a missing reply.
        if (m_bOpen && m_settings.pEvents != nullptr) {
            m_settings.pEvents->ReportLost(strReason);
        }
        m_bOpen = false;
    }
    CloseSocket();
}

void CConnection::Close()
{
    {
        const TMutexGuard guard(m_sendLock);
        m_bOpen = false;
    }
    CloseSocket();
}

void CConnection::CloseSocket()
{
    asio::post(m_socket.get_executor(), [self = shared_from_this()] {
        asio::error_code ignored;
        self->m_socket.close(ignored);
    });
}

void CConnection::Read()
{
    if (m_bReading) {
        return;
    }
    m_bReading = true;
    m_socket.async_wait(
        asio::socket_base::wait_read,
        [self = shared_from_this()](const asio::error_code& error) { self->OnReadable(error); });
}

void CConnection::OnReadable(asio::error_code error)
{
    // One for all connections: a host with a thousand of them cannot keep one for each. Made by the thread
    // that reads; an array would lie in the memory of every thread.
    static thread_local std::vector<char> t_chunk(kReadSize);
    m_bReading = false;
    const std::size_t nLen = error ? 0 : m_socket.read_some(asio::buffer(t_chunk), error);
    if (error == asio::error::would_block) {
        Read();
    } else if (error) {
        Fail(error == asio::error::eof ? "the decoder closed the connection" : error.message());
    } else {
        OnRead({t_chunk.data(), nLen});
    }
}

void CConnection::OnRead(std::string_view bytes)
{
    if (m_settings.pTrace != nullptr) {
        m_settings.pTrace->Received(bytes);
    }
    const TMutexGuard guard(m_receiveLock);
    m_strKept.append(bytes);
    if (!m_bStarted) {
        return;
    }
    if (m_settings.bBufferedReceive) {
        DeliverBuffered();
    } else {
        DeliverDirect();
    }
    if (m_strKept.size() > kMaxKept) {
        Fail("the decoder sent a message of more than 64 MiB");
        return;
    }
    Read();
}

void CConnection::DeliverDirect()
{
    if (m_strKept.size() < m_nWanted) {
        return;
    }
    unsigned int nNeed = 0;
    const std::size_t nConsumed = CallObserver(m_strKept, &nNeed);
    m_strKept.erase(0, nConsumed);
    m_nWanted = m_strKept.size() + nNeed;
}

void CConnection::DeliverBuffered()
{
    CallObserver(m_strKept, nullptr);
    m_strKept.clear();
}

unsigned int CConnection::CallObserver(std::string_view bytes, unsigned int* pNeedLen)
{
    if (m_pObserver == nullptr) {
        return 0;
    }
    try {
        const unsigned int nConsumed = m_pObserver->OnSocketRecvData(
            m_nHandle, bytes.data(), static_cast<unsigned int>(bytes.size()), pNeedLen, m_pContext);
        if (nConsumed <= bytes.size()) {
            return nConsumed;
        }
        Log(ELogLevel::Error, "the observer consumed more bytes than it was given");
    } catch (const std::exception& error) {
        Log(ELogLevel::Error, std::string("the observer threw an exception: ") + error.what());
    }
    return static_cast<unsigned int>(bytes.size());
}

void CConnection::Write()
{
    asio::const_buffer buffer;
    {
        const TMutexGuard guard(m_sendLock);
        if (m_queue.empty()) {
            return;
        }
        buffer = asio::buffer(m_queue.front()); // stays in place until it is popped below
    }
    asio::async_write(m_socket, buffer,
                      [self = shared_from_this()](const asio::error_code& error, std::size_t) {
                          if (error) {
                              self->Fail("sending failed: " + error.message());
                              return;
                          }
                          {
                              const TMutexGuard guard(self->m_sendLock);
                              self->m_nQueued -= self->m_queue.front().size();
                              self->m_queue.pop_front();
                          }
                          self->Write();
                      });
}

} // namespace standin_host
