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

HostEvents::HostEvents() : m_wakeDescriptor(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (m_wakeDescriptor < 0) {
        throw std::system_error(errno, std::generic_category(), "eventfd");
    }
}

HostEvents::~HostEvents() { ::close(m_wakeDescriptor); }

void HostEvents::Changed()
{
    // Fails only when the counter is full, and then the descriptor is readable anyway.
    [[maybe_unused]] const int result = ::eventfd_write(m_wakeDescriptor, 1);
}

void HostEvents::Interrupt(int signal)
{
    {
        const TMutexGuard guard(m_lock);
        // What ends the program is not hidden by a key that comes after it.
        m_signal = m_signal == 0 || signal != SIGINT ? signal : m_signal;
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
    {
        const TMutexGuard guard(m_lock);
        if (m_notifications.size() >= kMaxWaiting) {
            if (!std::exchange(m_dropping, true)) {
                Log(LogLevel::Abnormal, "notifications are dropped: too many wait to be printed");
            }
            return;
        }
        m_notifications.push_back(std::move(notification));
    }
    Changed();
}

int HostEvents::Interrupted() const
{
    const TMutexGuard guard(m_lock);
    return m_signal;
}

bool HostEvents::TakeKeyboardInterrupt()
{
    const TMutexGuard guard(m_lock);
    return m_signal == SIGINT && std::exchange(m_signal, 0) != 0;
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
    pollfd descriptors[] = {{m_wakeDescriptor, POLLIN, 0}, {input, POLLIN, 0}};
    // A signal that interrupts the call is reported through its handler; the caller comes back here.
    if (::poll(descriptors, 2, PollTimeout(deadline)) <= 0) {
        return {false, false};
    }
    eventfd_t reports = 0;
    const bool event = ::eventfd_read(m_wakeDescriptor, &reports) == 0;
    return {event, descriptors[1].revents != 0};
}

bool HostEvents::WaitForOutput(int output)
{
    bool writable = false;
    bool reported = false;
    for (bool signal = false; !writable && !signal;) {
        signal = Interrupted() != 0;
        pollfd descriptors[] = {{m_wakeDescriptor, POLLIN, 0}, {output, POLLOUT, 0}};
        (void)::poll(descriptors, 2, signal ? 0 : -1);
        eventfd_t reports = 0;
        reported = ::eventfd_read(m_wakeDescriptor, &reports) == 0 || reported;
        writable = descriptors[1].revents != 0;
    }
    if (reported) {
        Changed(); // Wait has not seen it yet
    }
    return writable;
}

} // namespace standin_host
