#include "Link/ReplyHandOver.h"

#include <new>
#include <utility>

void CReplyHandOver::Open()
{
    const CAutoLock lock(m_lock);
    m_bOpen = true;
}

void CReplyHandOver::Close()
{
    ExpectNone();
    const CAutoLock lock(m_lock);
    m_bOpen = false;
    m_pOther.reset();
}

void CReplyHandOver::Expect(int nSeq)
{
    ExpectNone();
    const CAutoLock lock(m_lock);
    m_awaited = nSeq;
    if (m_pOther && m_pOther->nSeq == nSeq) { // guessed
        m_pAwaited = std::move(m_pOther);
    }
}

bool CReplyHandOver::HasReply(int nSeq) const
{
    const CAutoLock lock(m_lock);
    return m_bArrived && m_awaited == nSeq;
}

std::unique_ptr<S_DeviceReply> CReplyHandOver::Take()
{
    const unsigned int nReceives = m_nReceives.load(std::memory_order_acquire);
    const auto hasArrived = [this] {
        const CAutoLock lock(m_lock);
        return m_bArrived;
    };
    if (nReceives % 2 == 1 && !hasArrived()) {
        m_nReceives.wait(nReceives, std::memory_order_acquire);
    }
    const CAutoLock lock(m_lock);
    if (m_pAwaited && m_pOther) {
        m_pAwaited->nBeside = m_pOther->strText.size();
    }
    return std::move(m_pAwaited);
}

void CReplyHandOver::ExpectNone()
{
    const CAutoLock lock(m_lock);
    m_awaited.reset();
    m_bArrived = false;
    m_pAwaited.reset();
}

bool CReplyHandOver::IsOpen() const
{
    const CAutoLock lock(m_lock);
    return m_bOpen;
}

CReplyHandOver::CReceiveScope::CReceiveScope(CReplyHandOver& handOver) : m_handOver(handOver)
{
    m_handOver.m_nReceives.fetch_add(1, std::memory_order_relaxed);
}

CReplyHandOver::CReceiveScope::~CReceiveScope()
{
    if (m_handOver.m_received) {
        m_handOver.Publish();
    }
    m_handOver.m_nReceives.fetch_add(1, std::memory_order_release);
    m_handOver.m_nReceives.notify_all();
}

std::unique_ptr<S_DeviceReply> CReplyHandOver::SReceived::Copy() const
{
    return std::make_unique<S_DeviceReply>(S_DeviceReply{nSeq, std::string(text)});
}

void CReplyHandOver::Prepare(int nSeq, E_Kind kind, std::string_view text)
{
    const SReceived received{nSeq, kind, text};
    if (IsOpen()) {
        m_pPrepared = received.Copy();
    }
    m_received = received;
}

void CReplyHandOver::Publish()
{
    try {
        if (!m_pPrepared && IsOpen()) { // a command has begun since the receive did
            m_pPrepared = m_received->Copy();
        }
    } catch (const std::bad_alloc&) {
    }
    if (m_pPrepared) {
        Keep(*m_received);
    }
    m_received.reset();
    m_pPrepared.reset(); // unwanted, or the text it replaced
}

void CReplyHandOver::Keep(const SReceived& received)
{
    const CAutoLock lock(m_lock);
    if (!m_bOpen) {
        return;
    }
    if (m_awaited != received.nSeq) {
        m_pOther.swap(m_pPrepared);
    } else if (!m_bArrived) {
        m_pAwaited.swap(m_pPrepared);
        m_bArrived = received.kind == E_Kind::Reply;
    }
}
