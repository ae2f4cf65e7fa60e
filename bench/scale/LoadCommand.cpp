#include "LoadCommand.h"

#include <algorithm>
#include <utility>

#include "Host/HostEvents.h"

namespace scale {

namespace {

constexpr std::chrono::milliseconds s_pollingStep{100};

} // namespace

CLoadCommand::CLoadCommand(unsigned int nCmdID, STally& tally) : m_nCmdID(nCmdID), m_tally(tally)
{
    ++m_tally.nQueued;
}

CLoadCommand::CLoadCommand(unsigned int nCmdID, STally& tally, std::optional<std::vector<uint8_t>> answer)
    : m_nCmdID(nCmdID), m_tally(tally), m_bChecked(true), m_answer(std::move(answer))
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
        Count(m_bChecked && !m_answer ? m_tally.nDone : m_tally.nRefused);
        break;
    case ORVA_NET_PROTOCOL::KEST_RESULT_TIMEOUT:
        Count(m_tally.nTimedOut);
        break;
    default:
        Count(m_tally.nOtherFailures);
    }
}

void CLoadCommand::ReplyBuffer(const char* pData, unsigned long nLen)
{
    const bool bOwn =
        !m_bChecked ||
        (m_answer && std::equal(m_answer->begin(), m_answer->end(), pData, pData + nLen,
                                [](uint8_t a, char b) { return a == static_cast<uint8_t>(b); }));
    Count(bOwn ? m_tally.nDone : m_tally.nForeign);
}

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
