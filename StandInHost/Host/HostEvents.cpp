#include "Host/HostEvents.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <csignal>
#include <system_error>
#include <utility>

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include "Base/ErrorLines.h"
#include "Base/ExitStatus.h"
#include "Host/HostLog.h"

namespace standin_host {

namespace {

int PollTimeout(HostEvents::Clock::time_point deadline)
{
    if (deadline == HostEvents::Clock::time_point::max()) {
        return -1;
    }
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - HostEvents::Clock::now()).count();
    return static_cast<int>(std::clamp<decltype(left)>(left, 0, INT_MAX));
}

} // namespace

HostEvents::HostEvents()
    : m_wakeDescriptor(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      m_signalDescriptor(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (m_wakeDescriptor < 0 || m_signalDescriptor < 0) {
        throw std::system_error(errno, std::generic_category(), "eventfd");
    }
}

HostEvents::~HostEvents()
{
    ::close(m_wakeDescriptor);
    ::close(m_signalDescriptor);
}

void HostEvents::Changed()
{
    // Fails only when the counter is full; the descriptor is then readable anyway.
    [[maybe_unused]] const int result = ::eventfd_write(m_wakeDescriptor, 1);
}

void HostEvents::Interrupt(int signal)
{
    {
        const TMutexGuard guard(m_lock);
        if (signal == SIGWINCH) {
            m_resized = true;
        } else { // a later key must not hide the signal that ends the program
            SetSignal(m_signal == 0 || signal != SIGINT ? signal : m_signal);
        }
    }
    Changed();
}

void HostEvents::ReportLost(const std::string& reason)
{
    {
        const TMutexGuard guard(m_lock);
        if (!m_lost) {
            m_lost = reason;
        }
    }
    Changed();
}

void HostEvents::Deliver(Notification notification)
{
    bool firstDropped = false;
    {
        const TMutexGuard guard(m_lock);
        if (m_notifications.size() < kMaxWaiting) {
            m_notifications.push_back(std::move(notification));
        } else {
            firstDropped = !std::exchange(m_dropping, true);
        }
    }
    if (firstDropped) { // logged without the lock: it may block until a signal comes
        Log(LogLevel::Abnormal, "notifications are dropped: too many wait to be printed");
    }
    Changed();
}

bool HostEvents::Write(int output, std::string_view text)
{
    static CMutex lock; // both standard streams may be one pipe, with room for only one of two threads
    while (!text.empty()) {
        pollfd descriptors[] = {{output, POLLOUT, 0}, {m_signalDescriptor, POLLIN, 0}};
        (void)::poll(descriptors, 2, -1);
        const TMutexGuard guard(lock);
        if (::poll(descriptors, 1, 0) != 1) {
            if (descriptors[1].revents != 0) {
                return false;
            }
            continue; // another thread was faster
        }
        // A writable pipe takes this much at once.
        const ssize_t written = ::write(output, text.data(), std::min<std::size_t>(text.size(), PIPE_BUF));
        if (written < 0 && errno != EINTR && errno != EAGAIN) {
            return false;
        }
        text.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
    }
    return true;
}

int HostEvents::Interrupted() const
{
    const TMutexGuard guard(m_lock);
    return m_signal;
}

void HostEvents::CheckInterrupted() const
{
    if (const int signal = Interrupted()) {
        throw ExitError(kExitSignalBase + signal, "interrupted");
    }
}

bool HostEvents::TakeKeyboardInterrupt()
{
    const TMutexGuard guard(m_lock);
    const bool keyboard = m_signal == SIGINT;
    if (keyboard) {
        SetSignal(0);
    }
    return keyboard;
}

void HostEvents::SetSignal(int signal)
{
    m_signal = signal;
    eventfd_t pending = 0;
    (void)(signal != 0 ? ::eventfd_write(m_signalDescriptor, 1)
                       : ::eventfd_read(m_signalDescriptor, &pending));
}

bool HostEvents::TakeResized()
{
    const TMutexGuard guard(m_lock);
    return std::exchange(m_resized, false);
}

void HostEvents::ForgetLost()
{
    const TMutexGuard guard(m_lock);
    m_lost.reset();
}

std::optional<std::string> HostEvents::Lost() const
{
    const TMutexGuard guard(m_lock);
    return m_lost;
}

std::deque<Notification> HostEvents::TakeNotifications()
{
    const TMutexGuard guard(m_lock);
    m_dropping = false;
    return std::exchange(m_notifications, {});
}

HostEvents::Wake HostEvents::Wait(Clock::time_point deadline, int input)
{
    if (m_awaited == nullptr || !HasProgress() || (input >= 0 && ::isatty(input) != 0)) {
        return WaitUnseen(deadline, input);
    }
    while (true) {
        const auto next = m_awaited->NextShown();
        const Wake wake = WaitUnseen(std::min(deadline, next), input);
        if (wake.event || wake.hasInput || Clock::now() < next) {
            return wake;
        }
        m_awaited->Show(deadline);
        if (Clock::now() >= deadline) {
            return wake;
        }
    }
}

HostEvents::Wake HostEvents::WaitUnseen(Clock::time_point deadline, int input)
{
    pollfd descriptors[] = {{m_wakeDescriptor, POLLIN, 0}, {input, POLLIN, 0}};
    // A signal that interrupts the call is reported through its handler; the caller calls again.
    if (::poll(descriptors, 2, PollTimeout(deadline)) <= 0) {
        return {false, false};
    }
    eventfd_t reports = 0;
    const bool event = ::eventfd_read(m_wakeDescriptor, &reports) == 0;
    return {event, descriptors[1].revents != 0};
}

HostEvents::Awaited::Awaited(HostEvents& events, std::string what)
    : m_events(events), m_what(std::move(what)), m_before(std::exchange(events.m_awaited, this))
{
}

HostEvents::Awaited::~Awaited()
{
    m_events.m_awaited = m_before;
    if (m_shown != 0) {
        ClearProgress();
    }
}

// "waiting for the answer to wall clear, 3 s of 35 s"
void HostEvents::Awaited::Show(Clock::time_point deadline)
{
    using std::chrono::seconds;
    m_shown = std::chrono::floor<seconds>(Clock::now() - m_since).count();
    std::string text = m_what + ", " + std::to_string(m_shown) + " s";
    if (deadline != Clock::time_point::max()) {
        text += " of " + std::to_string(std::chrono::round<seconds>(deadline - m_since).count()) + " s";
    }
    ShowProgress(text);
}

void HostEvents::AwaitInput(int descriptor)
{
    do {
        CheckInterrupted();
    } while (!Wait(Clock::time_point::max(), descriptor).hasInput);
    CheckInterrupted();
}

} // namespace standin_host
