#include "ReplyHandOver.h"

#include <utility>

CReplyHandOver::~CReplyHandOver()
{
    TakeFrom(m_pExpected);
    TakeFrom(m_pOther);
}

void CReplyHandOver::Put(Slot& slot, std::unique_ptr<S_DeviceReply> pReply)
{
    delete slot.exchange(pReply.release(), std::memory_order_acq_rel);
}

std::unique_ptr<S_DeviceReply> CReplyHandOver::TakeFrom(Slot& slot)
{
    return std::unique_ptr<S_DeviceReply>(slot.exchange(nullptr, std::memory_order_acq_rel));
}

void CReplyHandOver::Expect(int nSeq)
{
    TakeFrom(m_pExpected); // of an exchange before
    m_nExpectedSeq.store(nSeq, std::memory_order_release);
    // The look at the other messages comes after the store: one that is published later finds its number
    // expected (see Publish). One with another number is kept, too: it may be the guessed reply of a later
    // exchange.
    if (auto pOther = TakeFrom(m_pOther)) {
        m_pEarly = std::move(pOther);
    }
}

std::unique_ptr<S_DeviceReply> CReplyHandOver::Take()
{
    const unsigned int nReceives = m_nReceives.load(std::memory_order_acquire);
    if (nReceives % 2 == 1) {
        m_nReceives.wait(nReceives, std::memory_order_acquire);
    }
    const int nExpected = m_nExpectedSeq.load(std::memory_order_relaxed);
    auto pReply = TakeFrom(m_pExpected);
    if (pReply && pReply->nSeq == nExpected) {
        return pReply;
    }
    return m_pEarly && m_pEarly->nSeq == nExpected ? std::move(m_pEarly) : nullptr;
}

void CReplyHandOver::ExpectNone() { m_nExpectedSeq.store(NO_SEQ, std::memory_order_release); }

CReplyHandOver::CReceiveScope::CReceiveScope(CReplyHandOver& handOver) : m_handOver(handOver)
{
    m_handOver.m_nReceives.fetch_add(1, std::memory_order_relaxed);
}

CReplyHandOver::CReceiveScope::~CReceiveScope()
{
    if (m_handOver.m_pPrepared) {
        m_handOver.Publish();
    }
    m_handOver.m_nReceives.fetch_add(1, std::memory_order_release);
    m_handOver.m_nReceives.notify_all();
}

void CReplyHandOver::Prepare(int nSeq, const char* data, unsigned long len)
{
    m_pPrepared = std::make_unique<S_DeviceReply>(S_DeviceReply{nSeq, std::string(data, len)});
}

void CReplyHandOver::Publish()
{
    const int nSeq = m_pPrepared->nSeq;
    if (nSeq != m_nExpectedSeq.load(std::memory_order_acquire)) {
        Put(m_pOther, std::move(m_pPrepared));
        // The worker may have begun to expect this number in between and have looked before the message was
        // there; then the exchange in Put has made its store visible.
        if (nSeq != m_nExpectedSeq.load(std::memory_order_acquire)) {
            return;
        }
        m_pPrepared = TakeFrom(m_pOther);
        if (!m_pPrepared) {
            return; // the worker has it
        }
    }
    Put(m_pExpected, std::move(m_pPrepared));
}
