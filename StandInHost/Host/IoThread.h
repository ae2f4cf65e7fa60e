#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <thread>

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>
#include <asio/signal_set.hpp>

namespace standin_host {

// The host's receive thread: it runs every socket and timer. It outlives its users.
class IoThread {
public:
    IoThread();
    ~IoThread(); // pending handlers are dropped
    IoThread(const IoThread&) = delete;
    IoThread& operator=(const IoThread&) = delete;

    asio::io_context& Context() { return m_context; }
    // From now on SIGINT, SIGTERM, SIGHUP and SIGQUIT do not end the process; the handler gets their number,
    // and SIGWINCH, on a thread of its own, as this one may be blocked on a standard error that nobody reads.
    // A hang-up or quit that was ignored from the start stays ignored. Call once.
    void WatchSignals(std::function<void(int)> handler);

private:
    void Run();
    void AwaitSignal(std::function<void(int)> handler);

    asio::io_context m_context{1};
    asio::executor_work_guard<asio::io_context::executor_type> m_work{m_context.get_executor()};
    asio::io_context m_signalContext{1};
    asio::signal_set m_signals{m_signalContext};
    std::thread m_signalThread; // not running before WatchSignals
    std::thread m_thread;
};

// Calls a function on the receive thread at a steady pace.
class PeriodicTimer {
public:
    PeriodicTimer(IoThread& thread, std::chrono::milliseconds period, std::function<void()> function);
    // After it has returned, the function is not running and is not called any more. The function itself must
    // not call it.
    ~PeriodicTimer();
    PeriodicTimer(const PeriodicTimer&) = delete;
    PeriodicTimer& operator=(const PeriodicTimer&) = delete;

private:
    struct State;
    std::shared_ptr<State> m_state;
};

} // namespace standin_host
