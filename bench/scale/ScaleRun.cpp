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

using standin_host::ExitError;

namespace {

constexpr std::chrono::seconds kConnectTimeout{10};
// The plug-in itself gives up after 30 s, a login after twice that.
constexpr std::chrono::seconds kDrainTimeout{70};
constexpr std::chrono::seconds kHeartbeatEvery{5};

ExitError ConnectError(const std::string& port, const std::string& reason)
{
    return {standin_host::kExitConnection, "cannot connect to the decoder at port " + port + ": " + reason};
}

} // namespace

ScaleRun::ScaleRun(const ScaleOptions& options, const standin_host::Plugin& plugin,
                   standin_host::IoThread& ioThread, standin_host::HostEvents& events)
    : m_options(options),
      m_plugin(plugin),
      m_ioThread(ioThread),
      m_events(events),
      m_result(events),
      m_logins(events)
{
}

ScaleRun::~ScaleRun() = default;

void ScaleRun::Run(const std::string& user, const std::string& password,
                   const std::vector<std::string>& ports)
{
    Stages& stages = m_result.stages;
    m_nodes.reserve(ports.size());
    m_result.samples.reserve(static_cast<std::size_t>(m_options.loadTime / m_options.sampleEvery) + 2);
    WarmUp(user, password, ports.front());
    stages.begin = Settled();
    Connect(ports);
    stages.host = Settled();
    m_result.hostStacks = StacksUsed();
    StartSessions();
    stages.sessions = Settled();
    LogIn(user, password);
    stages.loggedIn = Settled();
    Load();
    stages.loaded = Settled();
    m_result.stacks = StacksUsed();
    for (const auto& node : m_nodes) {
        node->EndSession();
    }
    stages.noSession = Settled();
    m_nodes.clear();
    stages.end = Settled();
}

void ScaleRun::WarmUp(const std::string& user, const std::string& password, const std::string& port)
{
    Connect({port});
    StartSessions();
    LogIn(user, password);
    m_nodes.clear();
}

void ScaleRun::StartSessions()
{
    for (const auto& node : m_nodes) {
        node->StartSession(m_plugin);
    }
}

std::size_t ScaleRun::StacksUsed() const
{
    std::size_t bytes = 0;
    for (const auto& node : m_nodes) {
        bytes += node->StackUsed();
    }
    return bytes;
}

void ScaleRun::Connect(const std::vector<std::string>& ports)
{
    for (const std::string& port : ports) {
        standin_host::ConnectionSettings settings;
        settings.events = &m_events;
        std::string reason;
        auto connection = standin_host::Connect(m_ioThread, m_events, "127.0.0.1", port, kConnectTimeout,
                                                std::move(settings), reason);
        if (connection == nullptr) {
            Attend();
            throw ConnectError(port, reason);
        }
        m_nodes.push_back(std::make_unique<LoadNode>(static_cast<uint32_t>(m_nodes.size() + 1),
                                                     std::move(connection), m_events));
    }
}

void ScaleRun::LogIn(const std::string& user, const std::string& password)
{
    const auto begin = Clock::now();
    for (const auto& node : m_nodes) {
        node->Queue(new LoadCommand(ORVA_NET_PROTOCOL::KEST_CMD_REQUEST_LOGIN, m_logins),
                    standin_host::LoginRecord(user, password).bytes);
    }
    Drain(m_logins);
    m_result.loginTime = Clock::now() - begin;
    if (m_logins.done != m_logins.queued || m_logins.doubled != 0) {
        throw ExitError(standin_host::kExitCommandFailed,
                        "of " + std::to_string(m_logins.queued) + " logins " + std::to_string(m_logins.done) +
                            " succeeded, and " + std::to_string(m_logins.doubled) + " were answered twice");
    }
}

void ScaleRun::Load()
{
    const auto begin = Clock::now();
    const auto loadTime = std::chrono::duration_cast<Clock::duration>(m_options.loadTime);
    const auto sampleEvery = std::chrono::duration_cast<Clock::duration>(m_options.sampleEvery);
    const auto commandEvery = std::chrono::duration_cast<Clock::duration>(
        std::chrono::duration<double>(1 / (m_options.rate * static_cast<double>(m_nodes.size()))));
    const auto processorTime = ProcessorTime();
    auto nextSample = begin + sampleEvery;
    auto nextBeat = begin + kHeartbeatEvery;
    for (auto now = begin; now < begin + loadTime; now = Clock::now()) {
        Attend();
        QueueDue(begin, now);
        if (now >= nextBeat) {
            SendHeartbeats();
            nextBeat += kHeartbeatEvery;
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

// What a session keeps depends on its last requests, so it is measured at the same place each time. The
// commands queued for that, one after another, say nothing about latency.
void ScaleRun::EndRounds()
{
    while (m_next % (m_nodes.size() * CommandsOfARound()) != 0) {
        QueueNext();
    }
    Drain(m_result.load);
}

// The nodes take turns, each going through its round of commands.
void ScaleRun::QueueDue(Clock::time_point begin, Clock::time_point now)
{
    const double seconds = std::chrono::duration<double>(now - begin).count();
    const auto due =
        static_cast<uint64_t>(seconds * m_options.rate * static_cast<double>(m_nodes.size())) + 1;
    while (m_next < due) {
        QueueNext();
    }
}

void ScaleRun::QueueNext()
{
    const std::size_t node = m_next % m_nodes.size();
    const uint64_t ofNode = m_next / m_nodes.size();
    // No two nodes have the same round.
    const uint64_t round = ofNode / CommandsOfARound() * m_nodes.size() + node;
    Step step = CommandOfRound(ofNode % CommandsOfARound(), static_cast<uint32_t>(round));
    m_nodes[node]->Queue(new LoadCommand(step.cmdID, m_result.load, std::move(step.answer)),
                         std::move(step.payload));
    ++m_next;
}

void ScaleRun::Sample(Clock::time_point begin, Clock::time_point now)
{
    LatencyHistogram recent;
    recent.Take(m_result.load.latency);
    m_result.samples.push_back({std::chrono::duration<double>(now - begin).count(), ReadProcessFigures(),
                                m_result.load.Answered(), recent.Percentile(0.5), recent.Percentile(0.99)});
    m_result.latency.Take(recent);
}

void ScaleRun::SendHeartbeats()
{
    for (const auto& node : m_nodes) {
        node->SendHeartbeat();
        if (!node->IsOnline()) {
            ++m_result.offlineAnswers;
        }
    }
}

void ScaleRun::Drain(const Tally& tally)
{
    const auto deadline = Clock::now() + kDrainTimeout;
    while (tally.UnderWay() != 0 && Clock::now() < deadline) {
        Attend();
        m_events.Wait(deadline);
    }
    Attend();
}

void ScaleRun::Attend()
{
    for (const standin_host::Notification& notification : m_events.TakeNotifications()) {
        ++m_result.notifications;
        m_result.longestNotification = std::max(m_result.longestNotification, notification.data.size());
        m_result.numbered += notification.data.find("<seq>") != std::string::npos ? 1 : 0;
    }
    if (const int signal = m_events.Interrupted()) {
        throw ExitError(standin_host::kExitSignalBase + signal, "interrupted");
    }
    if (const auto reason = m_events.Lost()) {
        throw ExitError(standin_host::kExitConnection, "connection lost: " + *reason);
    }
}

ProcessFigures ScaleRun::Settled()
{
    std::promise<void> ran;
    asio::post(m_ioThread.Context(), [&ran] { ran.set_value(); });
    ran.get_future().wait();
    Attend();
    return ReadProcessFigures();
}

} // namespace scale
