#pragma once

#include <chrono>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Mutex.h"
#include "TvwallProtocol.h"

namespace standin_host {

// A notification of the decoder, copied during its delivery.
struct Notification {
    unsigned int cmdID;
    ORVA_NET_PROTOCOL::TVWALL_OPT_INFO info;
    GUID destination;
    std::string data;
    std::chrono::system_clock::time_point time = std::chrono::system_clock::now(); // of its delivery
};

// What the host's threads report to the one thread that drives the session. That thread waits only here, so
// that any event wakes it at once.
class HostEvents {
public:
    using Clock = std::chrono::steady_clock;

    // Throws std::system_error when the process is out of descriptors.
    HostEvents();
    ~HostEvents();
    HostEvents(const HostEvents&) = delete;
    HostEvents& operator=(const HostEvents&) = delete;

    // --- any thread ---

    // Something that the driving thread checks itself (an answer, a finished connect) has changed.
    void Changed();
    // A signal; SIGWINCH interrupts nothing, but is a change.
    void Interrupt(int signal);
    // Only the first reason is kept.
    void ReportLost(const std::string& reason);
    // At most kMaxWaiting wait; more are dropped, and the first of those is logged.
    void Deliver(Notification notification);
    // Writes the text to standard output or standard error, waiting for the reader; while a signal is
    // pending, writes only what is taken without waiting. False when the rest is given up or cannot be
    // written.
    bool Write(int output, std::string_view text);

    // --- driving thread ---

    int Interrupted() const; // the signal, or 0
    // Throws ExitError with status 128 + n after a signal.
    void CheckInterrupted() const;
    // Clears a keyboard interrupt and says whether there was one; other signals stay.
    bool TakeKeyboardInterrupt();
    // Whether the window was resized since the last call.
    bool TakeResized();
    // Clears a lost connection, so that another can be watched. The lost one must be closed.
    void ForgetLost();
    std::optional<std::string> Lost() const;
    std::deque<Notification> TakeNotifications();

    struct Wake {
        bool event;    // something was reported since the last wait
        bool hasInput; // the descriptor can be read without blocking
    };
    // Blocks until a report, input or the deadline. A negative descriptor is ignored. After a second, and
    // then each second, a terminal shows what is awaited, unless the input is typed there.
    Wake Wait(Clock::time_point deadline, int inputDescriptor = -1);
    // Blocks until the descriptor can be read. Throws ExitError after a signal.
    void AwaitInput(int descriptor);

    // What the driving thread waits for, in words, while this lives; the one before it is then awaited again.
    class Awaited {
    public:
        Awaited(HostEvents& events, std::string what);
        ~Awaited();
        Awaited(const Awaited&) = delete;
        Awaited& operator=(const Awaited&) = delete;

    private:
        friend class HostEvents;
        Clock::time_point NextShown() const { return m_since + std::chrono::seconds(m_shown + 1); }
        void Show(Clock::time_point deadline);

        HostEvents& m_events;
        const std::string m_what;
        const Clock::time_point m_since = Clock::now();
        Awaited* const m_before;
        long m_shown = 0; // seconds
    };

private:
    static constexpr std::size_t kMaxWaiting = 4096;

    Wake WaitUnseen(Clock::time_point deadline, int input);
    void SetSignal(int signal) TVWALL_REQUIRES(m_lock);

    mutable CMutex m_lock;
    int m_signal TVWALL_GUARDED_BY(m_lock) = 0;
    bool m_resized TVWALL_GUARDED_BY(m_lock) = false;
    std::optional<std::string> m_lost TVWALL_GUARDED_BY(m_lock);
    std::deque<Notification> m_notifications TVWALL_GUARDED_BY(m_lock);
    bool m_dropping TVWALL_GUARDED_BY(m_lock) = false; // since notifications were last taken
    Awaited* m_awaited = nullptr;                      // driving thread only
    int m_wakeDescriptor;                              // readable while Wait has not seen all reports
    int m_signalDescriptor;                            // readable while a signal is pending
};

} // namespace standin_host
