#include "LoadCommand.h"

#include <algorithm>

#include "HostEvents.h"

namespace scale {

namespace {

constexpr std::chrono::milliseconds s_pollingStep{100};

} // namespace

CLoadCommand::CLoadCommand(unsigned int nCmdID, STally& tally) : m_nCmdID(nCmdID), m_tally(tally)
{
    ++m_tally.nQueued;
}

CLoadCommand::~CLoadCommand()
{
    if (!m_bAnswered) {
        ++m_tally.nLost;
    }
    ++m_tally.nFinished;
    if (m_tally.UnderWay() == 0) {
        m_tally.events.Changed();
    }
}

void CLoadCommand::AddReference(int /*nHolderTag*/) { ++m_nReferences; }

void CLoadCommand::DecReference(int /*nHolderTag*/)
{
    if (--m_nReferences == 0) {
        delete this;
    }
}

void CLoadCommand::ReplyRecord(const ORVA_NET_PROTOCOL::_kest_net_reply& reply)
{
    switch (reply.dwResult) {
    case ORVA_NET_PROTOCOL::KEST_RESULT_DEVICE_ERROR:
        Count(m_tally.nRefused);
        break;
    case ORVA_NET_PROTOCOL::KEST_RESULT_TIMEOUT:
        Count(m_tally.nTimedOut);
        break;
    default:
        Count(m_tally.nOtherFailures);
    }
}

void CLoadCommand::ReplyBuffer(const char* /*pData*/, unsigned long /*nLen*/) { Count(m_tally.nDone); }

void CLoadCommand::Count(std::atomic<uint64_t>& kind)
{
    if (m_bAnswered.exchange(true)) {
        ++m_tally.nDoubled;
        return;
    }
    ++kind;
    const auto latency = std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::steady_clock::now() - m_queued - s_pollingStep);
    m_tally.latency.Record(static_cast<uint64_t>(std::max<decltype(latency.count())>(latency.count(), 0)));
}

} // namespace scale
