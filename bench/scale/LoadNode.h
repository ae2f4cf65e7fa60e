#pragma once

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <thread>
#include <vector>

#include "Host/Node.h"
#include "Mutex.h"
#include "NetProtocolProc.h"

namespace standin_host {
class Connection;
class HostEvents;
class Plugin;
} // namespace standin_host

namespace scale {

class LoadCommand;

// One decoder as the host sees it: node, connection and worker thread, which are the host's, and the
// plug-in's session. The session is created after the rest and destroyed before it, so that their costs can
// be told apart. Belongs to the driving thread.
class LoadNode {
public:
    // number, from 1, goes into the node's identifier.
    LoadNode(uint32_t number, std::shared_ptr<standin_host::Connection> connection,
             standin_host::HostEvents& events);
    ~LoadNode();
    LoadNode(const LoadNode&) = delete;
    LoadNode& operator=(const LoadNode&) = delete;

    // Throws UsageError when the plug-in refuses.
    void StartSession(const standin_host::Plugin& plugin);
    // Waits for a running command; the plug-in refuses queued ones.
    void EndSession();

    // Takes over the creator's reference on the command.
    void Queue(LoadCommand* command, std::vector<uint8_t> payload);
    void SendHeartbeat();
    bool IsOnline() { return m_processor->IsOnline(); }

    // Bytes of the worker's stack used so far, in whole pages.
    std::size_t StackUsed();

private:
    void Work();
    // Waits for a command; false when there will be none.
    bool AwaitQueued();

    const std::shared_ptr<standin_host::Connection> m_connection;
    standin_host::DecoderNode m_node;
    std::unique_ptr<CNetProtocolProc> m_processor; // changes only while the worker is idle

    CMutex m_lock;
    std::condition_variable_any m_changed;
    bool m_queued TVWALL_GUARDED_BY(m_lock) = false;  // a command was queued since the worker last looked
    bool m_working TVWALL_GUARDED_BY(m_lock) = false; // the worker is inside the plug-in
    bool m_stopping TVWALL_GUARDED_BY(m_lock) = false;
    std::thread m_worker;
};

} // namespace scale
