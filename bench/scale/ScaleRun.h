#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Host/HostEvents.h"
#include "LoadCommand.h"
#include "ProcessFigures.h"
#include "ScaleOptions.h"

namespace standin_host {
class CIoThread;
class CPlugin;
} // namespace standin_host

namespace scale {

class CLoadNode;

// The process at the end of each stage, when nothing is under way.
struct SStages {
    SProcessFigures begin;    // plug-in loaded and warm, decoders listen
    SProcessFigures host;     // connections, nodes and worker threads stand; the plug-in has no session
    SProcessFigures sessions; // each has its session
    SProcessFigures loggedIn;
    SProcessFigures loaded;    // the load is over
    SProcessFigures noSession; // the sessions are gone, the host's own part still stands
    SProcessFigures end;       // all is gone
};

struct SSample {
    double dSeconds; // since the load began
    SProcessFigures figures;
    uint64_t nAnswered; // so far
    uint64_t nP50;      // microseconds, of the answers since the sample before
    uint64_t nP99;
};

struct SScaleResult {
    explicit SScaleResult(standin_host::CHostEvents& events) : load(events) {}

    SStages stages;
    std::vector<SSample> samples;
    STally load;
    CLatencyHistogram latency;   // of all answers
    std::size_t nHostStacks = 0; // bytes of all workers' stacks in memory before there are sessions
    std::size_t nStacks = 0;     // after the load
    uint64_t nNotifications = 0;
    uint64_t nNumbered = 0;               // of these with a sequence number
    std::size_t nLongestNotification = 0; // bytes
    uint64_t nOfflineAnswers = 0;         // liveness checks that took a decoder for gone
    std::chrono::duration<double> loginTime{};
    std::chrono::duration<double> loadTime{};
    std::chrono::microseconds processorTime{}; // of the load
};

// One run, from the first connection to the last. Belongs to the driving thread.
class CScaleRun {
public:
    CScaleRun(const SScaleOptions& options, const standin_host::CPlugin& plugin,
              standin_host::CIoThread& ioThread, standin_host::CHostEvents& events);
    ~CScaleRun();
    CScaleRun(const CScaleRun&) = delete;
    CScaleRun& operator=(const CScaleRun&) = delete;

    // Throws CExitError for what ends the run early.
    void Run(const std::string& strUser, const std::string& strPassword,
             const std::vector<std::string>& ports);
    const SScaleResult& Result() const { return m_result; }

private:
    using Clock = standin_host::CHostEvents::Clock;

    // What the libraries set up once in a process is no cost of a session: one session, alone, pays for it.
    void WarmUp(const std::string& strUser, const std::string& strPassword, const std::string& strPort);
    void Connect(const std::vector<std::string>& ports);
    void StartSessions();
    std::size_t StacksUsed() const;
    void LogIn(const std::string& strUser, const std::string& strPassword);
    void Load();
    void QueueDue(Clock::time_point begin, Clock::time_point now);
    void QueueNext();
    void EndRounds();
    void Sample(Clock::time_point begin, Clock::time_point now);
    void SendHeartbeats();
    // Waits until no command of the phase is under way.
    void Drain(const STally& tally);
    // What the host's threads have reported; throws when that ends the run.
    void Attend();
    // The process once the receive thread has run what is posted to it.
    SProcessFigures Settled();

    const SScaleOptions& m_options;
    const standin_host::CPlugin& m_plugin;
    standin_host::CIoThread& m_ioThread;
    standin_host::CHostEvents& m_events;
    SScaleResult m_result;
    STally m_logins;
    uint64_t m_nNext = 0; // commands of the load so far
    std::vector<std::unique_ptr<CLoadNode>> m_nodes;
};

} // namespace scale
