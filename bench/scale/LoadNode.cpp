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

using standin_host::SocketLayer;
using standin_host::UsageError;

namespace {

constexpr GUID NodeID(uint32_t number)
{
    return {number, 0x0000, 0x4000, {0x80, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x02}};
}

} // namespace

LoadNode::LoadNode(uint32_t number, std::shared_ptr<standin_host::Connection> connection,
                   standin_host::HostEvents& events)
    : m_connection(std::move(connection)),
      m_node(NodeID(number), m_connection, events),
      m_worker([this] { Work(); })
{
}

LoadNode::~LoadNode()
{
    EndSession();
    {
        const TMutexGuard guard(m_lock);
        m_stopping = true;
    }
    m_changed.notify_all();
    m_worker.join();
    m_connection->Close();
}

void LoadNode::StartSession(const standin_host::Plugin& plugin)
{
    m_processor = plugin.CreateProcessor();
    if (m_processor == nullptr) {
        throw UsageError("the plug-in makes no processor");
    }
    const int handle = SocketLayer::Instance().Add(m_connection);
    char text[] = "";
    if (m_processor->Initial(&m_node, handle, 0, 0) != 0 || m_processor->Start(text, 0) != 0) {
        throw UsageError("the plug-in's processor does not start");
    }
}

void LoadNode::EndSession()
{
    if (m_processor == nullptr) {
        return;
    }
    m_connection->RefuseSends(); // ends a command that waits for room in the send queue
    m_processor->Stop();
    {
        const TMutexGuard guard(m_lock);
        while (m_working) {
            m_changed.wait(m_lock);
        }
        m_queued = false;
    }
    m_processor->Quit();
    m_processor.reset();
}

void LoadNode::Queue(LoadCommand* command, std::vector<uint8_t> payload)
{
    m_processor->AddOneCmd(command, payload.data(), static_cast<unsigned int>(payload.size()));
    command->DecReference(LoadCommand::kCreatorTag);
    {
        const TMutexGuard guard(m_lock);
        m_queued = true;
    }
    m_changed.notify_all();
}

void LoadNode::SendHeartbeat()
{
    unsigned long len = 0;
    const char* beat = m_processor->GetBeatData(len);
    m_node.SendData(beat, len); // failure is ignored
}

std::size_t LoadNode::StackUsed()
{
    const auto pageSize = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
    pthread_attr_t attributes;
    void* stack = nullptr;
    std::size_t size = 0;
    if (::pthread_getattr_np(m_worker.native_handle(), &attributes) != 0) {
        return 0;
    }
    ::pthread_attr_getstack(&attributes, &stack, &size);
    ::pthread_attr_destroy(&attributes);
    std::vector<unsigned char> pages(size / pageSize); // bit 0: the page is in memory
    if (::mincore(stack, pages.size() * pageSize, pages.data()) != 0) {
        return 0;
    }
    return pageSize * static_cast<std::size_t>(std::count_if(
                          pages.begin(), pages.end(), [](unsigned char page) { return (page & 1U) != 0; }));
}

void LoadNode::Work()
{
    while (AwaitQueued()) {
        while (m_processor->ProcDevCmd()) { // once stopped, it refuses what is left at once
        }
        {
            const TMutexGuard guard(m_lock);
            m_working = false;
        }
        m_changed.notify_all();
    }
}

bool LoadNode::AwaitQueued()
{
    const TMutexGuard guard(m_lock);
    while (!m_queued && !m_stopping) {
        m_changed.wait(m_lock);
    }
    m_working = !m_stopping;
    m_queued = false;
    return m_working;
}

} // namespace scale
