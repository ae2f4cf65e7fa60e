#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

#include "Host/IoThread.h"
#include "Host/Node.h"
#include "Mutex.h"
#include "NetProtocolProc.h"

namespace standin_host {

class CHostCommand;
class CPlugin;

struct SLinkSettings {
    GUID nodeID{};
    std::chrono::milliseconds heartbeatEvery{5000};
    std::chrono::milliseconds livenessEvery{5000};
};

// One decoder: the plug-in's processor for it, the worker thread that runs its commands, and the timers that
// send heartbeats and ask whether it is online.
class CDecoderLink {
public:
    // Creates, initialises and starts the processor over the connection. Throws CUsageError when the plug-in
    // refuses. Plug-in, receive thread and events outlive the link.
    CDecoderLink(const CPlugin& plugin, CIoThread& ioThread, CHostEvents& events,
                 std::shared_ptr<CConnection> pConnection, const SLinkSettings& settings);
    // A running command and a running receive end first; commands still queued are refused by the plug-in.
    ~CDecoderLink();
    CDecoderLink(const CDecoderLink&) = delete;
    CDecoderLink& operator=(const CDecoderLink&) = delete;

    // Queues a command; the payload is copied. Any thread. Throws std::bad_alloc.
    void Queue(CHostCommand& command, std::vector<uint8_t> payload);

private:
    void Work();
    bool AwaitQueued(); // false when the link ends
    void RunQueuedCommands();
    void SendHeartbeat();
    void CheckOnline();

    const std::shared_ptr<CConnection> m_pConnection;
    CDecoderNode m_node;
    std::unique_ptr<CNetProtocolProc> m_pProcessor;
    int m_nHandle = 0;

    CMutex m_lock;
    std::condition_variable_any m_wakeWorker;
    bool m_bQueued TVWALL_GUARDED_BY(m_lock) = false; // a command was queued since the worker last looked
    bool m_bStopping TVWALL_GUARDED_BY(m_lock) = false;
    std::thread m_worker;

    bool m_bOnline = true; // receive thread only
    std::optional<CPeriodicTimer> m_heartbeat;
    std::optional<CPeriodicTimer> m_liveness;
};

} // namespace standin_host
