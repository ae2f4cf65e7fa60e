#include "Host/Command.h"

#include <string>
#include <utility>

#include "Host/HostEvents.h"
#include "Host/HostLog.h"

namespace standin_host {

namespace {

std::atomic<long> live{0};
std::atomic<long> misuses{0};

void ReportMisuse(unsigned int cmdID, const char* what)
{
    ++misuses;
    Log(LogLevel::Error, "command " + std::to_string(cmdID) + ": " + what);
}

} // namespace

HostCommand::HostCommand(unsigned int cmdID, bool hasReply, HostEvents* events)
    : m_cmdID(cmdID), m_hasReply(hasReply), m_events(events)
{
    ++live;
}

HostCommand::~HostCommand()
{
    if (m_tagSum != 0) {
        ReportMisuse(m_cmdID, "references were given back under other tags than they were taken");
    }
    --live;
}

void HostCommand::AddReference(int holderTag)
{
    m_tagSum.fetch_add(holderTag, std::memory_order_relaxed);
    m_references.fetch_add(1, std::memory_order_relaxed);
}

void HostCommand::DecReference(int holderTag)
{
    HostEvents* events = m_events; // the object may be gone once its count has dropped
    KeepExchange();
    m_tagSum.fetch_sub(holderTag, std::memory_order_relaxed);
    if (m_references.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        delete this;
    } else if (events != nullptr) {
        events->Changed();
    }
}

void HostCommand::ReplyRecord(const ORVA_NET_PROTOCOL::_kest_net_reply& reply)
{
    const auto* bytes = reinterpret_cast<const uint8_t*>(&reply);
    Record({HostAnswer::Kind::Failure, reply.dwResult, {bytes, bytes + sizeof reply}});
}

void HostCommand::ReplyBuffer(const char* data, unsigned long len)
{
    const auto* bytes = reinterpret_cast<const uint8_t*>(data);
    if (bytes == nullptr && len != 0) {
        ReportMisuse(m_cmdID, "was answered with bytes at no address");
        len = 0;
    }
    Record({HostAnswer::Kind::Buffer, 0, {bytes, bytes + len}});
}

std::optional<HostAnswer> HostCommand::Answer() const
{
    const TMutexGuard guard(m_lock);
    return m_answer;
}

Exchange HostCommand::LastExchange() const
{
    {
        const TMutexGuard guard(m_lock);
        if (m_exchange) {
            return *m_exchange;
        }
    }
    return m_exchanges == nullptr ? Exchange{} : m_exchanges->Last();
}

// The plug-in is done with the link, or is about to say what came of it: what comes later is not part of it.
void HostCommand::KeepExchange()
{
    if (m_exchanges == nullptr) {
        return;
    }
    Exchange last = m_exchanges->Last();
    const TMutexGuard guard(m_lock);
    if (!m_answer) {
        m_exchange = std::move(last);
    }
}

long HostCommand::Live() { return live; }

long HostCommand::Misuses() { return misuses; }

void HostCommand::Record(HostAnswer answer)
{
    if (!m_hasReply) {
        ReportMisuse(m_cmdID, "was answered although nobody waits for an answer");
    }
    KeepExchange();
    {
        const TMutexGuard guard(m_lock);
        if (m_answer) {
            ReportMisuse(m_cmdID, "was answered a second time");
            return;
        }
        m_answer = std::move(answer);
    }
    if (m_events != nullptr) {
        m_events->Changed();
    }
}

} // namespace standin_host
