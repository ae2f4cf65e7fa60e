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
class IoThread;
class Plugin;
} // namespace standin_host

namespace scale {

class LoadNode;

// The process at the end of each stage, when nothing is under way.
struct Stages {
    ProcessFigures begin;    // plug-in loaded and warm, decoders listening
    ProcessFigures host;     // connections, nodes and worker threads exist; the plug-in has no session
    ProcessFigures sessions; // each has its session
    ProcessFigures loggedIn;
    ProcessFigures loaded;    // the load is over
    ProcessFigures noSession; // the sessions are gone, the host's own part remains
    ProcessFigures end;       // all is gone
};

struct Sample {
    double seconds; // since the load began
    ProcessFigures figures;
    uint64_t answered; // so far
    uint64_t p50;      // microseconds, for answers since the previous sample
    uint64_t p99;
};

struct ScaleResult {
    explicit ScaleResult(standin_host::HostEvents& events) : load(events) {}

    Stages stages;
    std::vector<Sample> samples;
    Tally load;
    LatencyHistogram latency;   // of all answers
    std::size_t hostStacks = 0; // bytes of all workers' stacks in memory before there are sessions
    std::size_t stacks = 0;     // after the load
    uint64_t notifications = 0;
    uint64_t numbered = 0;               // notifications with a sequence number
    std::size_t longestNotification = 0; // bytes
    uint64_t offlineAnswers = 0;         // liveness checks that found a decoder offline
    std::chrono::duration<double> loginTime{};
    std::chrono::duration<double> loadTime{};
    std::chrono::microseconds processorTime{}; // of the load
};

// One run, from the first connection to the last. Belongs to the driving thread.
class ScaleRun {
public:
    ScaleRun(const ScaleOptions& options, const standin_host::Plugin& plugin,
             standin_host::IoThread& ioThread, standin_host::HostEvents& events);
    ~ScaleRun();
    ScaleRun(const ScaleRun&) = delete;
    ScaleRun& operator=(const ScaleRun&) = delete;

    // Throws ExitError for what ends the run early.
    void Run(const std::string& user, const std::string& password, const std::vector<std::string>& ports);
    const ScaleResult& Result() const { return m_result; }

private:
    using Clock = standin_host::HostEvents::Clock;

    // Runs a single session first: what the libraries set up once in a process is not a cost of each session.
    void WarmUp(const std::string& user, const std::string& password, const std::string& port);
    void Connect(const std::vector<std::string>& ports);
    void StartSessions();
    std::size_t StacksUsed() const;
    void LogIn(const std::string& user, const std::string& password);
    void Load();
    void QueueDue(Clock::time_point begin, Clock::time_point now);
    void QueueNext();
    void EndRounds();
    void Sample(Clock::time_point begin, Clock::time_point now);
    void SendHeartbeats();
    // Waits until no command of the phase is under way.
    void Drain(const Tally& tally);
    // Checks what the host's threads have reported; throws when that ends the run.
    void Attend();
    // Figures of the process after the receive thread has run all work posted to it.
    ProcessFigures Settled();

    const ScaleOptions& m_options;
    const standin_host::Plugin& m_plugin;
    standin_host::IoThread& m_ioThread;
    standin_host::HostEvents& m_events;
    ScaleResult m_result;
    Tally m_logins;
    uint64_t m_next = 0; // commands of the load so far
    std::vector<std::unique_ptr<LoadNode>> m_nodes;
};

} // namespace scale
