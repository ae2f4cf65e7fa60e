#include "Host/DecoderLink.h"

#include <utility>

#include "Base/ExitStatus.h"
#include "Host/Command.h"
#include "Host/HostLog.h"
#include "Host/Plugin.h"
#include "Host/SocketLayer.h"

namespace standin_host {

DecoderLink::DecoderLink(const Plugin& plugin, IoThread& ioThread, HostEvents& events,
                         std::shared_ptr<Connection> connection, const LinkSettings& settings)
    : m_connection(std::move(connection)),
      m_node(settings.nodeID, m_connection, events),
      m_processor(plugin.CreateProcessor())
{
    if (m_processor == nullptr) {
        throw UsageError("the plug-in makes no processor");
    }
    m_handle = SocketLayer::Instance().Add(m_connection);
    char text[] = "";
    if (m_processor->Initial(&m_node, m_handle, 0, 0) != 0 || m_processor->Start(text, 0) != 0) {
        m_processor->Quit();
        throw UsageError("the plug-in's processor does not start");
    }
    m_worker = std::thread([this] { Work(); });
    m_heartbeat.emplace(ioThread, settings.heartbeatEvery, [this] { SendHeartbeat(); });
    m_liveness.emplace(ioThread, settings.livenessEvery, [this] { CheckOnline(); });
}

DecoderLink::~DecoderLink()
{
    m_liveness.reset();
    m_heartbeat.reset();
    m_connection->RefuseSends(); // ends a command that waits for room in the send queue
    {
        const TMutexGuard guard(m_lock);
        m_stopping = true;
    }
    m_wakeWorker.notify_one();
    m_processor->Stop();
    m_worker.join();
    m_processor->Quit();
    if (const auto left = SocketLayer::Instance().Remove(m_handle)) {
        Log(LogLevel::Error, "the plug-in did not destroy its connection handle");
        left->Close();
    }
}

void DecoderLink::Queue(HostCommand& command, std::vector<uint8_t> payload)
{
    command.WatchExchanges(m_connection->Exchanges());
    m_processor->AddOneCmd(&command, payload.data(), static_cast<unsigned int>(payload.size()));
    {
        const TMutexGuard guard(m_lock);
        m_queued = true;
    }
    m_wakeWorker.notify_one();
}

void DecoderLink::Work()
{
    while (AwaitQueued()) {
        RunQueuedCommands();
    }
}

bool DecoderLink::AwaitQueued()
{
    const TMutexGuard guard(m_lock);
    while (!m_queued && !m_stopping) {
        m_wakeWorker.wait(m_lock);
    }
    m_queued = false;
    return !m_stopping;
}

void DecoderLink::RunQueuedCommands()
{
    const auto stopping = [this] {
        const TMutexGuard guard(m_lock);
        return m_stopping; // the processor's Stop handles what is left
    };
    try {
        while (!stopping() && RunQueuedCommand()) {
        }
    } catch (const std::exception& error) {
        Log(LogLevel::Error, std::string("the plug-in threw an exception: ") + error.what());
    }
}

bool DecoderLink::RunQueuedCommand()
{
    const auto& exchanges = m_connection->Exchanges();
    if (exchanges == nullptr) {
        return m_processor->ProcDevCmd();
    }
    exchanges->Forget();
    const bool ran = m_processor->ProcDevCmd();
    exchanges->Forget();
    return ran;
}

void DecoderLink::SendHeartbeat()
{
    unsigned long len = 0;
    const char* beat = m_processor->GetBeatData(len);
    if (beat != nullptr && len != 0) {
        m_node.SendData(beat, len); // failure is ignored
    }
}

void DecoderLink::CheckOnline()
{
    const bool online = m_processor->IsOnline();
    if (online != m_online) {
        m_online = online;
        Log(LogLevel::Abnormal,
            online ? "the decoder is online again" : "the decoder is offline: nothing comes from it");
    }
}

} // namespace standin_host
