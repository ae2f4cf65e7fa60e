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

class HostCommand;
class Plugin;

struct LinkSettings {
    GUID nodeID{};
    std::chrono::milliseconds heartbeatEvery{5000};
    std::chrono::milliseconds livenessEvery{5000};
};

// One decoder: the plug-in's processor for it, the worker thread that runs its commands, and the timers that
// send heartbeats and check whether it is online.
class DecoderLink {
public:
    // Creates, initialises and starts the processor over the connection. Throws UsageError when the plug-in
    // refuses. Plug-in, receive thread and events outlive the link.
    DecoderLink(const Plugin& plugin, IoThread& ioThread, HostEvents& events,
                std::shared_ptr<Connection> connection, const LinkSettings& settings);
    // Waits for a running command and a running receive; the plug-in refuses commands still queued.
    ~DecoderLink();
    DecoderLink(const DecoderLink&) = delete;
    DecoderLink& operator=(const DecoderLink&) = delete;

    // Queues a command; the payload is copied. Any thread. Throws std::bad_alloc.
    void Queue(HostCommand& command, std::vector<uint8_t> payload);

private:
    void Work();
    bool AwaitQueued(); // false when the link ends
    void RunQueuedCommands();
    bool RunQueuedCommand(); // false when none was queued
    void SendHeartbeat();
    void CheckOnline();

    const std::shared_ptr<Connection> m_connection;
    DecoderNode m_node;
    std::unique_ptr<CNetProtocolProc> m_processor;
    int m_handle = 0;

    CMutex m_lock;
    std::condition_variable_any m_wakeWorker;
    bool m_queued TVWALL_GUARDED_BY(m_lock) = false; // a command was queued since the worker last looked
    bool m_stopping TVWALL_GUARDED_BY(m_lock) = false;
    std::thread m_worker;

    bool m_online = true; // receive thread only
    std::optional<PeriodicTimer> m_heartbeat;
    std::optional<PeriodicTimer> m_liveness;
};

} // namespace standin_host
