#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include <asio/ip/tcp.hpp>

#include "Host/Frames/ExchangeWatch.h"
#include "Host/Frames/FrameTrace.h"
#include "Mutex.h"

class CSocketDataObserver;

namespace standin_host {

class HostEvents;
class IoThread;

// How a connection delivers what it receives, and whom it notifies.
struct ConnectionSettings {
    bool bufferedReceive = false;      // the observer keeps unconsumed bytes itself (null needLen)
    std::shared_ptr<FrameTrace> trace; // null: no trace
    // Told of each frame before the plug-in or the decoder gets it; null when nobody asks for replies.
    std::shared_ptr<ExchangeWatch> exchanges;
    HostEvents* events = nullptr; // told of a lost connection; null when nobody listens
};

// Permanent send failure; NET_SOCKET_ERROR_NOBUFS is the only transient one.
inline constexpr unsigned int kSocketErrorNotConnected = 0x20000001;

// Why the calling thread's last failed send failed, as GetLastError tells the plug-in; 0 at first.
unsigned int LastSocketError();

// One TCP connection. Once started, it reads on the receive thread; every operation may be called from any
// thread.
class Connection : public std::enable_shared_from_this<Connection> {
public:
    Connection(asio::ip::tcp::socket socket, ConnectionSettings settings);

    void SetObserver(CSocketDataObserver* observer, void* context);
    // After it has returned, the observer is not called any more.
    void ClearObserver() { SetObserver(nullptr, nullptr); }
    void Start(int handle);
    // After it has returned, no receive is running. What arrives is kept for the next Start.
    void Stop();

    // Queues all bytes or none and returns at once; false sets LastSocketError. A message is refused with
    // NOBUFS when kMaxQueued bytes are already waiting.
    bool Send(std::string_view bytes);
    // Makes every send fail from now on, so that nobody waits for room in the queue.
    void RefuseSends();
    // Ends the connection on a failure; the events are told.
    void Fail(const std::string& reason);
    // Ends the connection on purpose.
    void Close();

    // Null when the settings have none.
    const std::shared_ptr<ExchangeWatch>& Exchanges() const { return m_settings.exchanges; }

    static constexpr std::size_t kMaxQueued = 1024UL * 1024;
    // Most bytes that an observer may leave unconsumed; a peer that causes more is cut off.
    static constexpr std::size_t kMaxKept = 64UL * 1024 * 1024;

private:
    void Read();
    void OnReadable(asio::error_code error);
    void OnRead(std::string_view bytes);
    void DeliverDirect() TVWALL_REQUIRES(m_receiveLock);
    void DeliverBuffered() TVWALL_REQUIRES(m_receiveLock);
    unsigned int CallObserver(std::string_view bytes, unsigned int* needLen) TVWALL_REQUIRES(m_receiveLock);
    void Write();
    void CloseSocket();

    asio::ip::tcp::socket m_socket; // receive thread only
    const ConnectionSettings m_settings;

    // Held while the observer runs; recursive, since an observer may stop its own connection.
    CRecursiveMutex m_receiveLock;
    CSocketDataObserver* m_observer TVWALL_GUARDED_BY(m_receiveLock) = nullptr;
    void* m_context TVWALL_GUARDED_BY(m_receiveLock) = nullptr;
    int m_handle TVWALL_GUARDED_BY(m_receiveLock) = 0;
    bool m_started TVWALL_GUARDED_BY(m_receiveLock) = false;
    bool m_reading = false;   // receive thread only
    std::string m_kept;       // bytes not yet consumed by the observer, and what came after them
    std::size_t m_wanted = 0; // bytes that m_kept must hold before the observer is called again

    CMutex m_sendLock;
    bool m_open TVWALL_GUARDED_BY(m_sendLock) = true;
    bool m_refuseSends TVWALL_GUARDED_BY(m_sendLock) = false;
    std::deque<std::string> m_queue TVWALL_GUARDED_BY(m_sendLock); // the front is being written
    std::size_t m_queued TVWALL_GUARDED_BY(m_sendLock) = 0;        // bytes in m_queue
};

// Resolves the name and connects. Returns null and the reason on failure or timeout, or when the events
// report an interrupt (the reason is then empty).
std::shared_ptr<Connection> Connect(IoThread& thread, HostEvents& events, const std::string& host,
                                    const std::string& port, std::chrono::milliseconds timeout,
                                    ConnectionSettings settings, std::string& reason);

} // namespace standin_host
