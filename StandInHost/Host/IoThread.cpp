#include "Host/IoThread.h"

#include <csignal>
#include <string>
#include <utility>

#include <asio/post.hpp>
#include <asio/steady_timer.hpp>

#include "Host/HostLog.h"
#include "Mutex.h"

namespace standin_host {

CIoThread::CIoThread() : m_thread([this] { Run(); }) {}

CIoThread::~CIoThread()
{
    m_context.stop();
    m_thread.join();
}

void CIoThread::WatchSignals(std::function<void(int)> handler)
{
    m_signals.add(SIGINT);
    m_signals.add(SIGTERM);
    for (const int nSignal : {SIGHUP, SIGQUIT}) {
        struct sigaction before {};
        if (::sigaction(nSignal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN) {
            m_signals.add(nSignal);
        }
    }
    AwaitSignal(std::move(handler));
}

void CIoThread::Run()
{
    while (!m_context.stopped()) {
        try {
            m_context.run();
        } catch (const std::exception& error) {
            Log(ELogLevel::Error, std::string("receive thread: ") + error.what());
        }
    }
}

void CIoThread::AwaitSignal(std::function<void(int)> handler)
{
    m_signals.async_wait([this, handler = std::move(handler)](const asio::error_code& error, int nSignal) {
        if (!error) {
            handler(nSignal);
            AwaitSignal(handler);
        }
    });
}

// Shared with the pending handler, so that a cancelled timer's last handler still finds its lock.
struct CPeriodicTimer::SState : std::enable_shared_from_this<SState> {
    SState(asio::io_context& context, std::chrono::milliseconds pace, std::function<void()> task)
        : timer(context), period(pace), function(std::move(task))
    {
    }

    void Arm()
    {
        timer.expires_after(period);
        timer.async_wait([self = shared_from_this()](const asio::error_code& error) {
            const TMutexGuard guard(self->lock);
            if (!error && !self->bStopped) {
                self->function();
                self->Arm();
            }
        });
    }

    asio::steady_timer timer; // receive thread only
    const std::chrono::milliseconds period;
    const std::function<void()> function;
    CMutex lock; // held while the function runs
    bool bStopped TVWALL_GUARDED_BY(lock) = false;
};

CPeriodicTimer::CPeriodicTimer(CIoThread& thread, std::chrono::milliseconds period,
                               std::function<void()> function)
    : m_pState(std::make_shared<SState>(thread.Context(), period, std::move(function)))
{
    asio::post(thread.Context(), [pState = m_pState] { pState->Arm(); });
}

CPeriodicTimer::~CPeriodicTimer()
{
    {
        const TMutexGuard guard(m_pState->lock);
        m_pState->bStopped = true;
    }
    asio::post(m_pState->timer.get_executor(), [pState = m_pState] { pState->timer.cancel(); });
}

} // namespace standin_host
