#include "Link/ReplyHandOver.h"

#include <utility>

CReplyHandOver::~CReplyHandOver() { Close(); }

std::unique_ptr<S_DeviceReply> CReplyHandOver::TakeFrom(Slot& slot)
{
    return std::unique_ptr<S_DeviceReply>(slot.exchange(nullptr, std::memory_order_acq_rel));
}

// Both threads change the state of the slots in the same order: the worker what is awaited, then the slot;
// the receive thread the slot, then it looks at what is awaited. So one of them sees what the other has done.

void CReplyHandOver::Open() { m_nAwaited.store(NONE_AWAITED, std::memory_order_release); }

void CReplyHandOver::Close()
{
    m_nAwaited.store(CLOSED, std::memory_order_release);
    TakeFrom(m_pReply);
    TakeFrom(m_pOther);
    m_pEarly.reset();
}

void CReplyHandOver::Expect(int nSeq)
{
    ExpectNone();
    TakeFrom(m_pReply); // of an exchange before
    m_nArrived.store(NONE_AWAITED, std::memory_order_relaxed);
    m_nAwaited.store(nSeq, std::memory_order_release);
    // One with another number is kept, too: it may be the guessed reply of a later exchange.
    if (auto pOther = TakeFrom(m_pOther)) {
        m_pEarly = std::move(pOther);
    }
}

bool CReplyHandOver::HasReply(int nSeq) const { return m_nArrived.load(std::memory_order_acquire) == nSeq; }

std::unique_ptr<S_DeviceReply> CReplyHandOver::Take()
{
    const int64_t nAwaited = m_nAwaited.load(std::memory_order_relaxed);
    const unsigned int nReceives = m_nReceives.load(std::memory_order_acquire);
    if (nReceives % 2 == 1 && m_nArrived.load(std::memory_order_acquire) != nAwaited) {
        m_nReceives.wait(nReceives, std::memory_order_acquire);
    }
    if (auto pReply = TakeFrom(m_pReply); pReply && pReply->nSeq == nAwaited) {
        return pReply;
    }
    if (m_pEarly && m_pEarly->nSeq == nAwaited) {
        return std::move(m_pEarly);
    }
    auto pOther = TakeFrom(m_pOther);
    return pOther && pOther->nSeq == nAwaited ? std::move(pOther) : nullptr;
}

void CReplyHandOver::ExpectNone() { m_nAwaited.store(NONE_AWAITED, std::memory_order_release); }

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

void CReplyHandOver::Prepare(int nSeq, E_Kind kind, std::string_view text)
{
    if (!IsClosed()) {
        m_preparedKind = kind;
        m_pPrepared = std::make_unique<S_DeviceReply>(S_DeviceReply{nSeq, std::string(text)});
    }
}

void CReplyHandOver::Publish()
{
    if (m_preparedKind == E_Kind::Reply && IsAwaited(m_pPrepared->nSeq)) {
        PublishReply(std::move(m_pPrepared));
    } else {
        PublishOther(std::move(m_pPrepared));
    }
}

void CReplyHandOver::PublishReply(std::unique_ptr<S_DeviceReply> pReply)
{
    const int nSeq = pReply->nSeq;
    S_DeviceReply* pNone = nullptr;
    if (!m_pReply.compare_exchange_strong(pNone, pReply.get(), std::memory_order_acq_rel)) {
        return; // the first one stays
    }
    (void)pReply.release(); // the slot owns it
    if (IsAwaited(nSeq)) {
        m_nArrived.store(nSeq, std::memory_order_release);
    } else {
        TakeFrom(m_pReply); // the worker has given up meanwhile
    }
}

void CReplyHandOver::PublishOther(std::unique_ptr<S_DeviceReply> pOther)
{
    const int nSeq = pOther->nSeq;
    delete m_pOther.exchange(pOther.release(), std::memory_order_acq_rel);
    if (IsClosed()) {
        TakeFrom(m_pOther);
    } else if (m_preparedKind == E_Kind::Reply &&
               IsAwaited(nSeq)) { // awaited since; the worker may have it already
        if (auto pReply = TakeFrom(m_pOther)) {
            PublishReply(std::move(pReply));
        }
    }
}
