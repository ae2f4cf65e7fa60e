#pragma once

#include "Condition.h"
#include "ThreadLock.h"

// Results of waits.
inline constexpr unsigned int WAIT_SIGNALLED = 0;
inline constexpr unsigned int WAIT_TIMED_OUT = 258;

// An event that threads wait for. A manual-reset event, once set, releases every wait until it is reset; an
// automatic-reset event releases one wait per set. All operations may be called from any thread.
class CMyEvent {
public:
    explicit CMyEvent(bool bManualReset); // not signalled
    CMyEvent(const CMyEvent&) = delete;
    CMyEvent& operator=(const CMyEvent&) = delete;

    bool SetEvent();   // always true
    bool ResetEvent(); // always true
    // Waits for at most ms milliseconds: WAIT_SIGNALLED or WAIT_TIMED_OUT. 0 only polls; 4294967295 waits
    // about 49.7 days, not forever.
    unsigned int WaitEvent(unsigned int ms) const;

private:
    const bool m_bManualReset;
    mutable CLock m_FEventCS;
    mutable CPFCondition m_FCond;
    mutable volatile unsigned int m_semCount TVWALL_GUARDED_BY(m_FEventCS); // 1 while signalled, else 0
};

// Keeps an event unsignalled for the length of a scope, so that others can wait for the work in it.
class CMySingleEvent {
public:
    explicit CMySingleEvent(CMyEvent& event) : m_event(event) { m_event.ResetEvent(); }
    ~CMySingleEvent() { m_event.SetEvent(); }
    CMySingleEvent(const CMySingleEvent&) = delete;
    CMySingleEvent& operator=(const CMySingleEvent&) = delete;

private:
    CMyEvent& m_event;
};

// Polls nCount events, 10 ms each, in passes that begin at index 0 and end at the first signalled one.
// Without bWaitAll it returns that event's index; with it, WAIT_SIGNALLED once every event has been seen
// signalled. WAIT_TIMED_OUT when the polls of the passes so far add up to more than ms milliseconds.
unsigned int WaitForMultipleObjects(int nCount, const CMyEvent** ppEvents, bool bWaitAll, unsigned int ms);
