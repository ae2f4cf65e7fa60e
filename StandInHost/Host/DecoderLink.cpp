#include "Host/DecoderLink.h"

#include <utility>

#include "Base/ExitStatus.h"
#include "Host/Command.h"
#include "Host/HostLog.h"
#include "Host/Plugin.h"
#include "Host/SocketLayer.h"

namespace standin_host {

CDecoderLink::CDecoderLink(const CPlugin& plugin, CIoThread& ioThread, CHostEvents& events,
                           std::shared_ptr<CConnection> pConnection, const SLinkSettings& settings)
    : m_pConnection(std::move(pConnection)),
      m_node(settings.nodeID, m_pConnection, events),
      m_pProcessor(plugin.CreateProcessor())
{
    if (m_pProcessor == nullptr) {
        throw CUsageError("the plug-in makes no processor");
    }
    m_nHandle = CSocketLayer::Instance().Add(m_pConnection);
    char szText[] = "";
    if (m_pProcessor->Initial(&m_node, m_nHandle, 0, 0) != 0 || m_pProcessor->Start(szText, 0) != 0) {
        m_pProcessor->Quit();
        throw CUsageError("the plug-in's processor does not start");
    }
    m_worker = std::thread([this] { Work(); });
    m_heartbeat.emplace(ioThread, settings.heartbeatEvery, [this] { SendHeartbeat(); });
    m_liveness.emplace(ioThread, settings.livenessEvery, [this] { CheckOnline(); });
}

CDecoderLink::~CDecoderLink()
{
    m_liveness.reset();
    m_heartbeat.reset();
    m_pConnection->RefuseSends(); // a command that waits for room in the send queue ends
    {
        const TMutexGuard guard(m_lock);
        m_bStopping = true;
    }
    m_wakeWorker.notify_one();
    m_pProcessor->Stop();
    m_worker.join();
    m_pProcessor->Quit();
    if (const auto pLeft = CSocketLayer::Instance().Remove(m_nHandle)) {
        Log(ELogLevel::Error, "the plug-in did not destroy its connection handle");
        pLeft->Close();
    }
}

void CDecoderLink::Queue(CHostCommand& command, std::vector<uint8_t> payload)
{
    m_pProcessor->AddOneCmd(&command, payload.data(), static_cast<unsigned int>(payload.size()));
    {
        const TMutexGuard guard(m_lock);
        m_bQueued = true;
    }
    m_wakeWorker.notify_one();
}

void CDecoderLink::Work()
{
    while (AwaitQueued()) {
        RunQueuedCommands();
    }
}

bool CDecoderLink::AwaitQueued()
{
    const TMutexGuard guard(m_lock);
    while (!m_bQueued && !m_bStopping) {
        m_wakeWorker.wait(m_lock);
    }
    m_bQueued = false;
    return !m_bStopping;
}

void CDecoderLink::RunQueuedCommands()
{
    const auto bStopping = [this] {
        const TMutexGuard guard(m_lock);
        return m_bStopping; // the processor's Stop takes what is left
    };
    try {
        while (!bStopping() && m_pProcessor->ProcDevCmd()) {
        }
    } catch (const std::exception& error) {
        Log(ELogLevel::Error, std::string("the plug-in threw an exception: ") + error.what());
    }
}

void CDecoderLink::SendHeartbeat()
{
    unsigned long nLen = 0;
    const char* pBeat = m_pProcessor->GetBeatData(nLen);
    if (pBeat != nullptr && nLen != 0) {
        m_node.SendData(pBeat, nLen); // one that fails is as good as none
    }
}

void CDecoderLink::CheckOnline()
{
    const bool bOnline = m_pProcessor->IsOnline();
    if (bOnline != m_bOnline) {
        m_bOnline = bOnline;
        Log(ELogLevel::Abnormal,
            bOnline ? "the decoder is online again" : "the decoder is offline: nothing comes from it");
    }
}

} // namespace standin_host
