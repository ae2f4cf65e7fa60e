#include "ReplyHandOver.h"

CReplyHandOver::~CReplyHandOver() { TakePublished(); }

std::unique_ptr<S_DeviceReply> CReplyHandOver::TakePublished()
{
    return std::unique_ptr<S_DeviceReply>(m_pPublished.exchange(nullptr, std::memory_order_acq_rel));
}

void CReplyHandOver::Expect(int nSeq)
{
    m_nExpectedSeq.store(nSeq, std::memory_order_release);
    // A decoder may have guessed the number and answered before the question. A receive that still saw no
    // number expected can replace that copy, so it is taken aside now.
    m_pEarly = TakePublished();
    if (m_pEarly && m_pEarly->nSeq != nSeq) {
        m_pEarly.reset();
    }
}

std::unique_ptr<S_DeviceReply> CReplyHandOver::Take()
{
    const unsigned int nReceives = m_nReceives.load(std::memory_order_acquire);
    if (nReceives % 2 == 1) {
        m_nReceives.wait(nReceives, std::memory_order_acquire);
    }
    auto pReply = TakePublished();
    if (pReply && pReply->nSeq == m_nExpectedSeq.load(std::memory_order_relaxed)) {
        return pReply;
    }
    return std::move(m_pEarly);
}

void CReplyHandOver::ExpectNone()
{
    m_nExpectedSeq.store(NO_SEQ, std::memory_order_release);
    m_pEarly.reset();
}

CReplyHandOver::CReceiveScope::CReceiveScope(CReplyHandOver& handOver) : m_handOver(handOver)
{
    m_handOver.m_nReceives.fetch_add(1, std::memory_order_relaxed);
}

CReplyHandOver::CReceiveScope::~CReceiveScope()
{
    if (m_handOver.m_pPrepared) {
        delete m_handOver.m_pPublished.exchange(m_handOver.m_pPrepared.release(), std::memory_order_acq_rel);
    }
    m_handOver.m_nReceives.fetch_add(1, std::memory_order_release);
    m_handOver.m_nReceives.notify_all();
}

void CReplyHandOver::Prepare(int nSeq, const char* data, unsigned long len)
{
    const int nExpected = m_nExpectedSeq.load(std::memory_order_acquire);
    if (nSeq == nExpected || nExpected == NO_SEQ) {
        m_pPrepared = std::make_unique<S_DeviceReply>(S_DeviceReply{nSeq, std::string(data, len)});
    }
}
