#include <optional>
#include <utility>

#include <asio/connect.hpp>
#include <asio/post.hpp>

#include "Host/Connection.h"
#include "Host/HostEvents.h"
#include "Host/IoThread.h"
#include "Mutex.h"

namespace standin_host {

namespace {

using asio::ip::tcp;

// One attempt, shared by the waiting thread and the handlers.
struct SAttempt : std::enable_shared_from_this<SAttempt> {
    SAttempt(asio::io_context& context, CHostEvents& hostEvents)
        : resolver(context), socket(context), events(hostEvents)
    {
    }

    void Begin(const std::string& strHost, const std::string& strPort)
    {
        resolver.async_resolve(strHost, strPort,
                               [self = shared_from_this()](const asio::error_code& failure,
                                                           const tcp::resolver::results_type& endpoints) {
                                   self->OnResolved(failure, endpoints);
                               });
    }

    void OnResolved(const asio::error_code& failure, const tcp::resolver::results_type& endpoints)
    {
        if (failure || bAbandoned) {
            Finish(failure);
            return;
        }
        asio::async_connect(socket, endpoints,
                            [self = shared_from_this()](const asio::error_code& failed,
                                                        const tcp::endpoint&) { self->Finish(failed); });
    }

    void Finish(const asio::error_code& failure)
    {
        if (bAbandoned) {
            return;
        }
        asio::error_code ignored;
        socket.set_option(tcp::no_delay(true), ignored);
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

    // Receive thread: nobody waits any more.
    void Abandon()
    {
        bAbandoned = true;
        resolver.cancel();
        asio::error_code ignored;
        socket.close(ignored);
    }

    tcp::resolver resolver;
    tcp::socket socket;
    CHostEvents& events;
    bool bAbandoned = false; // receive thread only
    CMutex lock;
    std::optional<asio::error_code> result TVWALL_GUARDED_BY(lock);
};

} // namespace

std::shared_ptr<CConnection> Connect(CIoThread& thread, CHostEvents& events, const std::string& strHost,
                                     const std::string& strPort, std::chrono::milliseconds timeout,
                                     SConnectionSettings settings, std::string& strReason)
{
    const auto pAttempt = std::make_shared<SAttempt>(thread.Context(), events);
    asio::post(thread.Context(), [pAttempt, strHost, strPort] { pAttempt->Begin(strHost, strPort); });
    const auto deadline = CHostEvents::Clock::now() + timeout;
    strReason = "no answer in time";
    while (events.Interrupted() == 0 && CHostEvents::Clock::now() < deadline) {
        if (const auto result = pAttempt->Result()) {
            if (!*result) {
                return std::make_shared<CConnection>(std::move(pAttempt->socket), std::move(settings));
            }
            strReason = result->message();
            break;
        }
        events.Wait(deadline);
    }
    if (events.Interrupted() != 0) {
        strReason.clear();
    }
    asio::post(thread.Context(), [pAttempt] { pAttempt->Abandon(); });
    return nullptr;
}

} // namespace standin_host
