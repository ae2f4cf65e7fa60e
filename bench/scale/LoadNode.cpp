#include "LoadNode.h"

#include <algorithm>
#include <utility>

#include <pthread.h>
#include <sys/mman.h>
#include <unistd.h>

#include "Base/ExitStatus.h"
#include "Host/Connection.h"
#include "Host/Plugin.h"
#include "Host/SocketLayer.h"
#include "LoadCommand.h"

namespace scale {

using standin_host::CSocketLayer;
using standin_host::CUsageError;

namespace {

constexpr GUID NodeID(uint32_t nNumber)
{
    return {nNumber, 0x0000, 0x4000, {0x80, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x02}};
}

} // namespace

CLoadNode::CLoadNode(uint32_t nNumber, std::shared_ptr<standin_host::CConnection> pConnection,
                     standin_host::CHostEvents& events)
    : m_pConnection(std::move(pConnection)),
      m_node(NodeID(nNumber), m_pConnection, events),
      m_worker([this] { Work(); })
{
}

CLoadNode::~CLoadNode()
{
    EndSession();
    {
        const TMutexGuard guard(m_lock);
        m_bStopping = true;
    }
    m_changed.notify_all();
    m_worker.join();
    m_pConnection->Close();
}

void CLoadNode::StartSession(const standin_host::CPlugin& plugin)
{
    m_pProcessor = plugin.CreateProcessor();
    if (m_pProcessor == nullptr) {
        throw CUsageError("the plug-in makes no processor");
    }
    const int nHandle = CSocketLayer::Instance().Add(m_pConnection);
    char szText[] = "";
    if (m_pProcessor->Initial(&m_node, nHandle, 0, 0) != 0 || m_pProcessor->Start(szText, 0) != 0) {
        throw CUsageError("the plug-in's processor does not start");
    }
}

void CLoadNode::EndSession()
{
    if (m_pProcessor == nullptr) {
        return;
    }
    m_pConnection->RefuseSends(); // a command that waits for room in the send queue ends
    m_pProcessor->Stop();
    {
        const TMutexGuard guard(m_lock);
        while (m_bWorking) {
            m_changed.wait(m_lock);
        }
        m_bQueued = false;
    }
    m_pProcessor->Quit();
    m_pProcessor.reset();
}

void CLoadNode::Queue(CLoadCommand* pCommand, std::vector<uint8_t> payload)
{
    m_pProcessor->AddOneCmd(pCommand, payload.data(), static_cast<unsigned int>(payload.size()));
    pCommand->DecReference(CLoadCommand::kCreatorTag);
    {
        const TMutexGuard guard(m_lock);
        m_bQueued = true;
    }
    m_changed.notify_all();
}

void CLoadNode::SendHeartbeat()
{
    unsigned long nLen = 0;
    const char* pBeat = m_pProcessor->GetBeatData(nLen);
    m_node.SendData(pBeat, nLen); // one that fails is as good as none
}

std::size_t CLoadNode::StackUsed()
{
    const auto nPage = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    pthread_attr_t attributes;
    void* pStack = nullptr;
    std::size_t nSize = 0;
    if (::pthread_getattr_np(m_worker.native_handle(), &attributes) != 0) {
        return 0;
    }
    ::pthread_attr_getstack(&attributes, &pStack, &nSize);
    ::pthread_attr_destroy(&attributes);
    std::vector<unsigned char> pages(nSize / nPage); // bit 0: the page is in memory
    if (::mincore(pStack, pages.size() * nPage, pages.data()) != 0) {
        return 0;
    }
    return nPage * static_cast<std::size_t>(std::count_if(
                       pages.begin(), pages.end(), [](unsigned char page) { return (page & 1U) != 0; }));
}

void CLoadNode::Work()
{
    while (AwaitQueued()) {
        while (m_pProcessor->ProcDevCmd()) { // a stopped one refuses what is left at once
        }
        {
            const TMutexGuard guard(m_lock);
            m_bWorking = false;
        }
        m_changed.notify_all();
    }
}

bool CLoadNode::AwaitQueued()
{
    const TMutexGuard guard(m_lock);
    while (!m_bQueued && !m_bStopping) {
        m_changed.wait(m_lock);
    }
    m_bWorking = !m_bStopping;
    m_bQueued = false;
    return m_bWorking;
}

} // namespace scale
