#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include <asio/ip/tcp.hpp>

#include "Host/FrameTrace.h"
#include "Mutex.h"

class CSocketDataObserver;

namespace standin_host {

class HostEvents;
class IoThread;

// How a connection hands on what it receives and whom it tells.
struct ConnectionSettings {
    bool bufferedReceive = false;      // the observer keeps unconsumed bytes itself (null needLen)
    std::shared_ptr<FrameTrace> trace; // null: no trace
    HostEvents* events = nullptr;      // hears of a lost connection; null when nobody listens
};

// Why a send failed for good; NET_SOCKET_ERROR_NOBUFS is the one failure that passes.
inline constexpr unsigned int kSocketErrorNotConnected = 0x20000001;

// Why a send failed last on the calling thread, as GetLastError gives it to the plug-in; 0 at first.
unsigned int LastSocketError();

// One TCP connection. It reads on the receive thread once it is started; every operation may be called from
// any thread.
class Connection : public std::enable_shared_from_this<Connection> {
public:
    Connection(asio::ip::tcp::socket socket, ConnectionSettings settings);

    void SetObserver(CSocketDataObserver* observer, void* context);
    // After it has returned, the observer is not called any more.
    void ClearObserver() { SetObserver(nullptr, nullptr); }
    void Start(int handle);
    // After it has returned, no receive is running. What arrives is kept for the next Start.
    void Stop();

    // Queues all bytes or none and returns at once; false sets LastSocketError. A message that finds
    // kMaxQueued bytes waiting before it is refused with NOBUFS.
    bool Send(std::string_view bytes);
    // From now on every send fails, so that nobody waits for room in the queue.
    void RefuseSends();
    // Ends the connection for a reason that nobody asked for; the events hear of it.
    void Fail(const std::string& reason);
    // Ends the connection on purpose.
    void Close();

    static constexpr std::size_t kMaxQueued = 1024UL * 1024;
    // Bytes that an observer leaves unconsumed; a peer that makes it more is cut off.
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
    std::string m_kept;       // bytes that the observer has not consumed, and what came after them
    std::size_t m_wanted = 0; // bytes that m_kept must hold before the observer is called again

    CMutex m_sendLock;
    bool m_open TVWALL_GUARDED_BY(m_sendLock) = true;
    bool m_refuseSends TVWALL_GUARDED_BY(m_sendLock) = false;
    std::deque<std::string> m_queue TVWALL_GUARDED_BY(m_sendLock); // the front is being written
    std::size_t m_queued TVWALL_GUARDED_BY(m_sendLock) = 0;        // bytes in m_queue
};

// Resolves the name and connects. Returns null and the reason when that failed, took too long, or the events
// report an interrupt (the reason is empty then).
std::shared_ptr<Connection> Connect(IoThread& thread, HostEvents& events, const std::string& host,
                                    const std::string& port, std::chrono::milliseconds timeout,
                                    ConnectionSettings settings, std::string& reason);

} // namespace standin_host
