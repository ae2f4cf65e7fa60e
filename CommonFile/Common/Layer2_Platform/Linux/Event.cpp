#include "Event.h"

#include <cstdint>
#include <memory>
#include <new>

#include "PFTime.h"

namespace {

constexpr unsigned int POLL_MS = 10;

} // namespace

CMyEvent::CMyEvent(bool bManualReset) : m_bManualReset(bManualReset), m_FEventCS(true), m_semCount(0) {}

bool CMyEvent::SetEvent()
{
    CAutoLock guard(m_FEventCS);
    m_semCount = 1;
    m_FCond.WakeOne(); // one waiter, also of a manual-reset event
    return true;
}

bool CMyEvent::ResetEvent()
{
    CAutoLock guard(m_FEventCS);
    m_semCount = 0;
    return true;
}

unsigned int CMyEvent::WaitEvent(unsigned int ms) const
{
    const timespec deadline = CPFTime::GetDeadline(ms);
    CAutoLock guard(m_FEventCS);
    while (m_semCount == 0) {
        if (!m_FCond.WaitUntil(m_FEventCS, deadline)) {
            return WAIT_TIMED_OUT;
        }
    }
    if (!m_bManualReset) {
        m_semCount = 0;
    }
    return WAIT_SIGNALLED;
}

unsigned int WaitForMultipleObjects(int nCount, const CMyEvent** ppEvents, bool bWaitAll, unsigned int ms)
{
    if (nCount <= 0) {
        return bWaitAll ? WAIT_SIGNALLED : WAIT_TIMED_OUT;
    }
    const auto nEvents = static_cast<unsigned int>(nCount);
    const std::unique_ptr<bool[]> seen(new (std::nothrow) bool[nEvents]());
    if (!seen) {
        return WAIT_TIMED_OUT;
    }
    unsigned int nSeen = 0;
    for (uint64_t nElapsed = 0; nElapsed <= ms;) {
        for (unsigned int i = 0; i < nEvents; ++i) {
            if (seen[i]) {
                continue;
            }
            nElapsed += POLL_MS;
            if (ppEvents[i]->WaitEvent(POLL_MS) != WAIT_SIGNALLED) {
                continue;
            }
            if (!bWaitAll) {
                return i;
            }
            seen[i] = true;
            if (++nSeen == nEvents) {
                return WAIT_SIGNALLED;
            }
            break;
        }
    }
    return WAIT_TIMED_OUT;
}
