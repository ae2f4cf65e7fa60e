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

int PollTimeout(CHostEvents::Clock::time_point deadline)
{
    if (deadline == CHostEvents::Clock::time_point::max()) {
        return -1;
    }
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(deadline - CHostEvents::Clock::now()).count();
    return static_cast<int>(std::clamp<decltype(left)>(left, 0, INT_MAX));
}

} // namespace

CHostEvents::CHostEvents() : m_nWakeDescriptor(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (m_nWakeDescriptor < 0) {
        throw std::system_error(errno, std::generic_category(), "eventfd");
    }
}

CHostEvents::~CHostEvents() { ::close(m_nWakeDescriptor); }

void CHostEvents::Changed()
{
    // Fails only when the counter is full, and then the descriptor is readable anyway.
    [[maybe_unused]] const int nResult = ::eventfd_write(m_nWakeDescriptor, 1);
}

void CHostEvents::Interrupt(int nSignal)
{
    {
        const TMutexGuard guard(m_lock);
        // What ends the program is not hidden by a key that comes after it.
        m_nSignal = m_nSignal == 0 || nSignal != SIGINT ? nSignal : m_nSignal;
    }
    Changed();
}

void CHostEvents::ReportLost(const std::string& strReason)
{
    {
        const TMutexGuard guard(m_lock);
        if (!m_lost) {
            m_lost = strReason;
        }
    }
    Changed();
}

void CHostEvents::Deliver(SNotification notification)
{
    {
        const TMutexGuard guard(m_lock);
        if (m_notifications.size() >= kMaxWaiting) {
            if (!std::exchange(m_bDropping, true)) {
                Log(ELogLevel::Abnormal, "notifications are dropped: too many wait to be printed");
            }
            return;
        }
        m_notifications.push_back(std::move(notification));
    }
    Changed();
}

int CHostEvents::Interrupted() const
{
    const TMutexGuard guard(m_lock);
    return m_nSignal;
}

bool CHostEvents::TakeKeyboardInterrupt()
{
    const TMutexGuard guard(m_lock);
    return m_nSignal == SIGINT && std::exchange(m_nSignal, 0) != 0;
}

void CHostEvents::ForgetLost()
{
    const TMutexGuard guard(m_lock);
    m_lost.reset();
}

std::optional<std::string> CHostEvents::Lost() const
{
    const TMutexGuard guard(m_lock);
    return m_lost;
}

std::deque<SNotification> CHostEvents::TakeNotifications()
{
    const TMutexGuard guard(m_lock);
    m_bDropping = false;
    return std::exchange(m_notifications, {});
}

CHostEvents::SWake CHostEvents::Wait(Clock::time_point deadline, int nInput)
{
    pollfd descriptors[] = {{m_nWakeDescriptor, POLLIN, 0}, {nInput, POLLIN, 0}};
    // A signal that interrupts the call is reported through its handler; the caller comes back here.
    if (::poll(descriptors, 2, PollTimeout(deadline)) <= 0) {
        return {false, false};
    }
    eventfd_t nReports = 0;
    const bool bEvent = ::eventfd_read(m_nWakeDescriptor, &nReports) == 0;
    return {bEvent, descriptors[1].revents != 0};
}

bool CHostEvents::WaitForOutput(int nOutput)
{
    bool bWritable = false;
    bool bReported = false;
    for (bool bSignal = false; !bWritable && !bSignal;) {
        bSignal = Interrupted() != 0;
        pollfd descriptors[] = {{m_nWakeDescriptor, POLLIN, 0}, {nOutput, POLLOUT, 0}};
        (void)::poll(descriptors, 2, bSignal ? 0 : -1);
        eventfd_t nReports = 0;
        bReported = ::eventfd_read(m_nWakeDescriptor, &nReports) == 0 || bReported;
        bWritable = descriptors[1].revents != 0;
    }
    if (bReported) {
        Changed(); // Wait has not seen it yet
    }
    return bWritable;
}

} // namespace standin_host
