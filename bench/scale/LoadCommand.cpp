#include "LoadCommand.h"

#include <algorithm>
#include <utility>

#include "Host/HostEvents.h"

namespace scale {

namespace {

constexpr std::chrono::milliseconds kPollingStep{100};

} // namespace

LoadCommand::LoadCommand(unsigned int cmdID, Tally& tally) : m_cmdID(cmdID), m_tally(tally)
{
    ++m_tally.queued;
}

LoadCommand::LoadCommand(unsigned int cmdID, Tally& tally, std::optional<std::vector<uint8_t>> answer)
    : m_cmdID(cmdID), m_tally(tally), m_checked(true), m_answer(std::move(answer))
{
    ++m_tally.queued;
}

LoadCommand::~LoadCommand()
{
    if (!m_answered) {
        ++m_tally.lost;
    }
    ++m_tally.finished;
    if (m_tally.UnderWay() == 0) {
        m_tally.events.Changed();
    }
}

void LoadCommand::AddReference(int /*holderTag*/) { ++m_references; }

void LoadCommand::DecReference(int /*holderTag*/)
{
    if (--m_references == 0) {
        delete this;
    }
}

void LoadCommand::ReplyRecord(const ORVA_NET_PROTOCOL::_kest_net_reply& reply)
{
    switch (reply.dwResult) {
    case ORVA_NET_PROTOCOL::KEST_RESULT_DEVICE_ERROR:
        Count(m_checked && !m_answer ? m_tally.done : m_tally.refused);
        break;
    case ORVA_NET_PROTOCOL::KEST_RESULT_TIMEOUT:
        Count(m_tally.timedOut);
        break;
    default:
        Count(m_tally.otherFailures);
    }
}

void LoadCommand::ReplyBuffer(const char* data, unsigned long len)
{
    const bool own = !m_checked ||
                     (m_answer && std::equal(m_answer->begin(), m_answer->end(), data, data + len,
                                             [](uint8_t a, char b) { return a == static_cast<uint8_t>(b); }));
    Count(own ? m_tally.done : m_tally.foreign);
}

void LoadCommand::Count(std::atomic<uint64_t>& kind)
{
    if (m_answered.exchange(true)) {
        ++m_tally.doubled;
        return;
    }
    ++kind;
    const auto latency = std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::steady_clock::now() - m_queued - kPollingStep);
    m_tally.latency.Record(static_cast<uint64_t>(std::max<decltype(latency.count())>(latency.count(), 0)));
}

} // namespace scale
