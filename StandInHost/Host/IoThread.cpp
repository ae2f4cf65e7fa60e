#include "Host/IoThread.h"

#include <csignal>
#include <string>
#include <utility>

#include <asio/post.hpp>
#include <asio/steady_timer.hpp>

#include "Host/HostLog.h"
#include "Mutex.h"

namespace standin_host {

IoThread::IoThread() : m_thread([this] { Run(); }) {}

IoThread::~IoThread()
{
    m_context.stop();
    m_thread.join();
    m_signalContext.stop();
    if (m_signalThread.joinable()) {
        m_signalThread.join();
    }
}

void IoThread::WatchSignals(std::function<void(int)> handler)
{
    m_signals.add(SIGINT);
    m_signals.add(SIGTERM);
    m_signals.add(SIGWINCH);
    for (const int signal : {SIGHUP, SIGQUIT}) {
        struct sigaction before {};
        if (::sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN) {
            m_signals.add(signal);
        }
    }
    AwaitSignal(std::move(handler));
    m_signalThread = std::thread([this] { m_signalContext.run(); });
}

void IoThread::Run()
{
    while (!m_context.stopped()) {
        try {
            m_context.run();
        } catch (const std::exception& error) {
            Log(LogLevel::Error, std::string("receive thread: ") + error.what());
        }
    }
}

void IoThread::AwaitSignal(std::function<void(int)> handler)
{
    m_signals.async_wait([this, handler = std::move(handler)](const asio::error_code& error, int signal) {
        if (!error) {
            handler(signal);
            AwaitSignal(handler);
        }
    });
}

// Shared with the pending handler, so that a cancelled timer's last handler still finds its lock.
struct PeriodicTimer::State : std::enable_shared_from_this<State> {
    State(asio::io_context& context, std::chrono::milliseconds pace, std::function<void()> task)
        : timer(context), period(pace), function(std::move(task))
    {
    }

    void Arm()
    {
        timer.expires_after(period);
        timer.async_wait([self = shared_from_this()](const asio::error_code& error) {
            const TMutexGuard guard(self->lock);
            if (!error && !self->stopped) {
                self->function();
                self->Arm();
            }
        });
    }

    asio::steady_timer timer; // receive thread only
    const std::chrono::milliseconds period;
    const std::function<void()> function;
    CMutex lock; // held while the function runs
    bool stopped TVWALL_GUARDED_BY(lock) = false;
};

PeriodicTimer::PeriodicTimer(IoThread& thread, std::chrono::milliseconds period,
                             std::function<void()> function)
    : m_state(std::make_shared<State>(thread.Context(), period, std::move(function)))
{
    asio::post(thread.Context(), [state = m_state] { state->Arm(); });
}

PeriodicTimer::~PeriodicTimer()
{
    {
        const TMutexGuard guard(m_state->lock);
        m_state->stopped = true;
    }
    asio::post(m_state->timer.get_executor(), [state = m_state] { state->timer.cancel(); });
}

} // namespace standin_host
