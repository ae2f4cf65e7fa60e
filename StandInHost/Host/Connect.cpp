#include <optional>
#include <utility>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <asio/connect.hpp>
#include <asio/post.hpp>

#include "Host/Connection.h"
#include "Host/HostEvents.h"
#include "Host/IoThread.h"
#include "Mutex.h"
#include "Tools/Common/SocketFaults.h"

namespace standin_host {

namespace {

using asio::ip::tcp;

struct SocketOption {
    int level;
    int name;
    int value;
};

// A decoder that goes without closing the link, unplugged, is noticed after half a minute, whether or not
// something is being sent to it.
constexpr SocketOption kNoticeDeadPeer[] = {
    {SOL_SOCKET, SO_KEEPALIVE, 1},
    {IPPROTO_TCP, TCP_KEEPIDLE, 10},         // seconds of silence until the first probe
    {IPPROTO_TCP, TCP_KEEPINTVL, 5},         // seconds between probes
    {IPPROTO_TCP, TCP_USER_TIMEOUT, 30'000}, // milliseconds without an acknowledgement, also of probes
};

void SetOptions(int socket)
{
    for (const auto& [level, name, value] : kNoticeDeadPeer) {
        (void)::setsockopt(socket, level, name, &value, sizeof value); // best effort
    }
}

// One attempt, shared by the waiting thread and its handlers.
struct Attempt : std::enable_shared_from_this<Attempt> {
    Attempt(asio::io_context& context, HostEvents& hostEvents)
        : resolver(context), socket(context), events(hostEvents)
    {
    }

    void Begin(const std::string& host, const std::string& port)
    {
        resolver.async_resolve(host, port,
                               [self = shared_from_this()](const asio::error_code& failure,
                                                           const tcp::resolver::results_type& endpoints) {
                                   self->OnResolved(failure, endpoints);
                               });
    }

    void OnResolved(const asio::error_code& failure, const tcp::resolver::results_type& endpoints)
    {
        if (failure || abandoned) {
            Finish(failure);
            return;
        }
        asio::async_connect(socket, endpoints,
                            [self = shared_from_this()](const asio::error_code& failed,
                                                        const tcp::endpoint&) { self->Finish(failed); });
    }

    void Finish(const asio::error_code& failure)
    {
        if (abandoned) {
            return;
        }
        asio::error_code ignored;
        socket.set_option(tcp::no_delay(true), ignored);
        SetOptions(socket.native_handle());
        {
            const TMutexGuard guard(lock);
            result = failure;
        }
        events.Changed();
    }

    std::optional<asio::error_code> Result()
    {
        const TMutexGuard guard(lock);
        return result;
    }

    // Receive thread only; nobody is waiting any more.
    void Abandon()
    {
        abandoned = true;
        resolver.cancel();
        asio::error_code ignored;
        socket.close(ignored);
    }

    tcp::resolver resolver;
    tcp::socket socket;
    HostEvents& events;
    bool abandoned = false; // receive thread only
    CMutex lock;
    std::optional<asio::error_code> result TVWALL_GUARDED_BY(lock);
};

} // namespace

std::shared_ptr<Connection> Connect(IoThread& thread, HostEvents& events, const std::string& host,
                                    const std::string& port, std::chrono::milliseconds timeout,
                                    ConnectionSettings settings, std::string& reason)
{
    const auto attempt = std::make_shared<Attempt>(thread.Context(), events);
    asio::post(thread.Context(), [attempt, host, port] { attempt->Begin(host, port); });
    const HostEvents::Awaited awaited(events, "connecting to " + host + " port " + port);
    const auto deadline = HostEvents::Clock::now() + timeout;
    reason = "no answer in time";
    while (events.Interrupted() == 0 && HostEvents::Clock::now() < deadline) {
        if (const auto result = attempt->Result()) {
            if (!*result) {
                return std::make_shared<Connection>(std::move(attempt->socket), std::move(settings));
            }
            reason = tools::SocketFault(*result);
            break;
        }
        events.Wait(deadline);
    }
    if (events.Interrupted() != 0) {
        reason.clear();
    }
    asio::post(thread.Context(), [attempt] { attempt->Abandon(); });
    return nullptr;
}

} // namespace standin_host
