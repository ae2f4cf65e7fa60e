#pragma once

#include <chrono>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "Mutex.h"
#include "TvwallProtocol.h"

namespace standin_host {

// A notification of the decoder, copied during its delivery.
struct SNotification {
    unsigned int nCmdID;
    ORVA_NET_PROTOCOL::TVWALL_OPT_INFO info;
    GUID destination;
    std::string strData;
};

// What the host's threads report to the one thread that drives the session. That thread waits here and
// nowhere else, so that whatever happens wakes it at once.
class CHostEvents {
public:
    using Clock = std::chrono::steady_clock;

    // Throws std::system_error when the process is out of descriptors.
    CHostEvents();
    ~CHostEvents();
    CHostEvents(const CHostEvents&) = delete;
    CHostEvents& operator=(const CHostEvents&) = delete;

    // --- any thread ---

    // Something that the driving thread looks at itself (an answer, a finished connect) has changed.
    void Changed();
    void Interrupt(int nSignal);
    // Only the first reason is kept.
    void ReportLost(const std::string& strReason);
    // At most kMaxWaiting wait; what is beyond is dropped, and the first of them logged.
    void Deliver(SNotification notification);

    // --- driving thread ---

    int Interrupted() const; // the signal, or 0
    // Forgets an interrupt from the keyboard and says whether there was one; other signals stay.
    bool TakeKeyboardInterrupt();
    // Forgets a lost connection, so that another one can be watched. The lost one must be closed.
    void ForgetLost();
    std::optional<std::string> Lost() const;
    std::deque<SNotification> TakeNotifications();

    struct SWake {
        bool bEvent; // something was reported since the last wait
        bool bInput; // the descriptor can be read without blocking
    };
    // Blocks until a report, input or the deadline. A negative descriptor is not looked at.
    SWake Wait(Clock::time_point deadline, int nInput = -1);
    // Blocks until the descriptor can be written, or until a signal has come; false when it cannot.
    bool WaitForOutput(int nOutput);

private:
    static constexpr std::size_t kMaxWaiting = 4096;

    mutable CMutex m_lock;
    int m_nSignal TVWALL_GUARDED_BY(m_lock) = 0;
    std::optional<std::string> m_lost TVWALL_GUARDED_BY(m_lock);
    std::deque<SNotification> m_notifications TVWALL_GUARDED_BY(m_lock);
    bool m_bDropping TVWALL_GUARDED_BY(m_lock) = false; // since they were last taken
    int m_nWakeDescriptor;                              // readable while reports have not been seen by Wait
};

} // namespace standin_host
