#include "ScaleRun.h"

#include <algorithm>
#include <future>
#include <utility>

#include <asio/post.hpp>

#include "Base/ExitStatus.h"
#include "Commands/Records/Payloads.h"
#include "Host/Connection.h"
#include "Host/IoThread.h"
#include "Host/Plugin.h"
#include "LoadNode.h"
#include "Workload.h"

namespace scale {

using standin_host::CExitError;

namespace {

constexpr std::chrono::seconds s_connectTimeout{10};
// The plug-in itself gives up after 30 s, a login after twice that.
constexpr std::chrono::seconds s_drainTimeout{70};
constexpr std::chrono::seconds s_heartbeatEvery{5};

CExitError ConnectError(const std::string& strPort, const std::string& strReason)
{
    return {standin_host::EXIT_CONNECTION,
            "cannot connect to the decoder at port " + strPort + ": " + strReason};
}

} // namespace

CScaleRun::CScaleRun(const SScaleOptions& options, const standin_host::CPlugin& plugin,
                     standin_host::CIoThread& ioThread, standin_host::CHostEvents& events)
    : m_options(options),
      m_plugin(plugin),
      m_ioThread(ioThread),
      m_events(events),
      m_result(events),
      m_logins(events)
{
}

CScaleRun::~CScaleRun() = default;

void CScaleRun::Run(const std::string& strUser, const std::string& strPassword,
                    const std::vector<std::string>& ports)
{
    SStages& stages = m_result.stages;
    m_nodes.reserve(ports.size());
    m_result.samples.reserve(static_cast<std::size_t>(m_options.loadTime / m_options.sampleEvery) + 2);
    WarmUp(strUser, strPassword, ports.front());
    stages.begin = Settled();
    Connect(ports);
    stages.host = Settled();
    m_result.nHostStacks = StacksUsed();
    StartSessions();
    stages.sessions = Settled();
    LogIn(strUser, strPassword);
    stages.loggedIn = Settled();
    Load();
    stages.loaded = Settled();
    m_result.nStacks = StacksUsed();
    for (const auto& pNode : m_nodes) {
        pNode->EndSession();
    }
    stages.noSession = Settled();
    m_nodes.clear();
    stages.end = Settled();
}

void CScaleRun::WarmUp(const std::string& strUser, const std::string& strPassword, const std::string& strPort)
{
    Connect({strPort});
    StartSessions();
    LogIn(strUser, strPassword);
    m_nodes.clear();
}

void CScaleRun::StartSessions()
{
    for (const auto& pNode : m_nodes) {
        pNode->StartSession(m_plugin);
    }
}

std::size_t CScaleRun::StacksUsed() const
{
    std::size_t nBytes = 0;
    for (const auto& pNode : m_nodes) {
        nBytes += pNode->StackUsed();
    }
    return nBytes;
}

void CScaleRun::Connect(const std::vector<std::string>& ports)
{
    for (const std::string& strPort : ports) {
        standin_host::SConnectionSettings settings;
        settings.pEvents = &m_events;
        std::string strReason;
        auto pConnection = standin_host::Connect(m_ioThread, m_events, "127.0.0.1", strPort, s_connectTimeout,
                                                 std::move(settings), strReason);
        if (pConnection == nullptr) {
            Attend();
            throw ConnectError(strPort, strReason);
        }
        m_nodes.push_back(std::make_unique<CLoadNode>(static_cast<uint32_t>(m_nodes.size() + 1),
                                                      std::move(pConnection), m_events));
    }
}

void CScaleRun::LogIn(const std::string& strUser, const std::string& strPassword)
{
    const auto begin = Clock::now();
    for (const auto& pNode : m_nodes) {
        pNode->Queue(new CLoadCommand(ORVA_NET_PROTOCOL::KEST_CMD_REQUEST_LOGIN, m_logins),
                     standin_host::LoginRecord(strUser, strPassword).bytes);
    }
    Drain(m_logins);
    m_result.loginTime = Clock::now() - begin;
    if (m_logins.nDone != m_logins.nQueued || m_logins.nDoubled != 0) {
        throw CExitError(standin_host::EXIT_COMMAND_FAILED,
                         "of " + std::to_string(m_logins.nQueued) + " logins " +
                             std::to_string(m_logins.nDone) + " succeeded, and " +
                             std::to_string(m_logins.nDoubled) + " were answered twice");
    }
}

void CScaleRun::Load()
{
    const auto begin = Clock::now();
    const auto loadTime = std::chrono::duration_cast<Clock::duration>(m_options.loadTime);
    const auto sampleEvery = std::chrono::duration_cast<Clock::duration>(m_options.sampleEvery);
    const auto commandEvery = std::chrono::duration_cast<Clock::duration>(
        std::chrono::duration<double>(1 / (m_options.dRate * static_cast<double>(m_nodes.size()))));
    const auto processorTime = ProcessorTime();
    auto nextSample = begin + sampleEvery;
    auto nextBeat = begin + s_heartbeatEvery;
    for (auto now = begin; now < begin + loadTime; now = Clock::now()) {
        Attend();
        QueueDue(begin, now);
        if (now >= nextBeat) {
            SendHeartbeats();
            nextBeat += s_heartbeatEvery;
        }
        if (now >= nextSample) {
            Sample(begin, now);
            nextSample += sampleEvery;
        }
        m_events.Wait(std::min({begin + loadTime, nextSample, nextBeat, Clock::now() + commandEvery}));
    }
    m_result.loadTime = Clock::now() - begin;
    Drain(m_result.load);
    m_result.latency.Take(m_result.load.latency);
    EndRounds();
    m_result.processorTime = ProcessorTime() - processorTime;
}

// What a session keeps depends on its last requests, so it is measured at the same place each time. Those
// that are queued for that, one behind the other, say nothing about latency.
void CScaleRun::EndRounds()
{
    while (m_nNext % (m_nodes.size() * CommandsOfARound()) != 0) {
        QueueNext();
    }
    Drain(m_result.load);
}

// The nodes take turns, and each goes through its round of commands.
void CScaleRun::QueueDue(Clock::time_point begin, Clock::time_point now)
{
    const double dSeconds = std::chrono::duration<double>(now - begin).count();
    const auto nDue =
        static_cast<uint64_t>(dSeconds * m_options.dRate * static_cast<double>(m_nodes.size())) + 1;
    while (m_nNext < nDue) {
        QueueNext();
    }
}

void CScaleRun::QueueNext()
{
    const std::size_t nNode = m_nNext % m_nodes.size();
    const uint64_t nOfNode = m_nNext / m_nodes.size();
    // No two nodes have the same round.
    const uint64_t nRound = nOfNode / CommandsOfARound() * m_nodes.size() + nNode;
    SStep step = CommandOfRound(nOfNode % CommandsOfARound(), static_cast<uint32_t>(nRound));
    m_nodes[nNode]->Queue(new CLoadCommand(step.nCmdID, m_result.load, std::move(step.answer)),
                          std::move(step.payload));
    ++m_nNext;
}

void CScaleRun::Sample(Clock::time_point begin, Clock::time_point now)
{
    CLatencyHistogram recent;
    recent.Take(m_result.load.latency);
    m_result.samples.push_back({std::chrono::duration<double>(now - begin).count(), ReadProcessFigures(),
                                m_result.load.Answered(), recent.Percentile(0.5), recent.Percentile(0.99)});
    m_result.latency.Take(recent);
}

void CScaleRun::SendHeartbeats()
{
    for (const auto& pNode : m_nodes) {
        pNode->SendHeartbeat();
        if (!pNode->IsOnline()) {
            ++m_result.nOfflineAnswers;
        }
    }
}

void CScaleRun::Drain(const STally& tally)
{
    const auto deadline = Clock::now() + s_drainTimeout;
    while (tally.UnderWay() != 0 && Clock::now() < deadline) {
        Attend();
        m_events.Wait(deadline);
    }
    Attend();
}

void CScaleRun::Attend()
{
    for (const standin_host::SNotification& notification : m_events.TakeNotifications()) {
        ++m_result.nNotifications;
        m_result.nLongestNotification = std::max(m_result.nLongestNotification, notification.strData.size());
        m_result.nNumbered += notification.strData.find("<seq>") != std::string::npos ? 1 : 0;
    }
    if (const int nSignal = m_events.Interrupted()) {
        throw CExitError(standin_host::EXIT_SIGNAL_BASE + nSignal, "interrupted");
    }
    if (const auto reason = m_events.Lost()) {
        throw CExitError(standin_host::EXIT_CONNECTION, "connection lost: " + *reason);
    }
}

SProcessFigures CScaleRun::Settled()
{
    std::promise<void> ran;
    asio::post(m_ioThread.Context(), [&ran] { ran.set_value(); });
    ran.get_future().wait();
    Attend();
    return ReadProcessFigures();
}

} // namespace scale
