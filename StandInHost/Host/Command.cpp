#include "Host/Command.h"

#include <string>
#include <utility>

#include "Host/HostEvents.h"
#include "Host/HostLog.h"

namespace standin_host {

namespace {

std::atomic<long> s_nLive{0};
std::atomic<long> s_nMisuses{0};

void ReportMisuse(unsigned int nCmdID, const char* szWhat)
{
    ++s_nMisuses;
    Log(ELogLevel::Error, "command " + std::to_string(nCmdID) + ": " + szWhat);
}

} // namespace

CHostCommand::CHostCommand(unsigned int nCmdID, bool bHasReply, CHostEvents* pEvents)
    : m_nCmdID(nCmdID), m_bHasReply(bHasReply), m_pEvents(pEvents)
{
    ++s_nLive;
}

CHostCommand::~CHostCommand()
{
    if (m_nTagSum != 0) {
        ReportMisuse(m_nCmdID, "references were given back under other tags than they were taken");
    }
    --s_nLive;
}

void CHostCommand::AddReference(int nHolderTag)
{
    m_nTagSum.fetch_add(nHolderTag, std::memory_order_relaxed);
    m_nReferences.fetch_add(1, std::memory_order_relaxed);
}

void CHostCommand::DecReference(int nHolderTag)
{
    CHostEvents* pEvents = m_pEvents; // the object may be gone once its count has gone down
    m_nTagSum.fetch_sub(nHolderTag, std::memory_order_relaxed);
    if (m_nReferences.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        delete this;
    } else if (pEvents != nullptr) {
        pEvents->Changed();
    }
}

void CHostCommand::ReplyRecord(const ORVA_NET_PROTOCOL::_kest_net_reply& reply)
{
    const auto* pBytes = reinterpret_cast<const uint8_t*>(&reply);
    Record({SAnswer::EKind::Failure, reply.dwResult, {pBytes, pBytes + sizeof reply}});
}

void CHostCommand::ReplyBuffer(const char* pData, unsigned long nLen)
{
    const auto* pBytes = reinterpret_cast<const uint8_t*>(pData);
    if (pBytes == nullptr && nLen != 0) {
        ReportMisuse(m_nCmdID, "was answered with bytes at no address");
        nLen = 0;
    }
    Record({SAnswer::EKind::Buffer, 0, {pBytes, pBytes + nLen}});
}

std::optional<SAnswer> CHostCommand::Answer() const
{
    const TMutexGuard guard(m_lock);
    return m_answer;
}

long CHostCommand::Live() { return s_nLive; }

long CHostCommand::Misuses() { return s_nMisuses; }

void CHostCommand::Record(SAnswer answer)
{
    if (!m_bHasReply) {
        ReportMisuse(m_nCmdID, "was answered although nobody waits for an answer");
    }
    {
        const TMutexGuard guard(m_lock);
        if (m_answer) {
            ReportMisuse(m_nCmdID, "was answered a second time");
            return;
        }
        m_answer = std::move(answer);
    }
    if (m_pEvents != nullptr) {
        m_pEvents->Changed();
    }
}

} // namespace standin_host
