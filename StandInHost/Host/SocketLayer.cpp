#include "Host/SocketLayer.h"

#include <utility>

#include "Host/HostExport.h"

namespace standin_host {

SocketLayer& SocketLayer::Instance()
{
    static SocketLayer layer;
    return layer;
}

int SocketLayer::Add(std::shared_ptr<Connection> connection)
{
    const TMutexGuard guard(m_lock);
    m_connections.emplace(++m_lastHandle, std::move(connection));
    return m_lastHandle;
}

std::shared_ptr<Connection> SocketLayer::Find(int handle) const
{
    const TMutexGuard guard(m_lock);
    const auto it = m_connections.find(handle);
    return it == m_connections.end() ? nullptr : it->second;
}

std::shared_ptr<Connection> SocketLayer::Remove(int handle)
{
    const TMutexGuard guard(m_lock);
    const auto node = m_connections.extract(handle);
    return node.empty() ? nullptr : node.mapped();
}

} // namespace standin_host

using standin_host::SocketLayer;

// 0 on success, -1 for a handle that names no connection.
extern "C" {

HOST_EXPORT int NET_SOCKET_RegisterNode(int netCommunication, CSocketDataObserver* observer, void* context,
                                        int /*a*/, int /*b*/)
{
    const auto connection = SocketLayer::Instance().Find(netCommunication);
    if (connection == nullptr || observer == nullptr) {
        return -1;
    }
    connection->SetObserver(observer, context);
    return 0;
}

HOST_EXPORT int NET_SOCKET_UnRegisterNode(int netCommunication)
{
    const auto connection = SocketLayer::Instance().Find(netCommunication);
    if (connection == nullptr) {
        return -1;
    }
    connection->ClearObserver();
    return 0;
}

HOST_EXPORT int NET_SOCKET_Start(int netCommunication)
{
    const auto connection = SocketLayer::Instance().Find(netCommunication);
    if (connection == nullptr) {
        return -1;
    }
    connection->Start(netCommunication);
    return 0;
}

HOST_EXPORT int NET_SOCKET_Stop(int netCommunication)
{
    const auto connection = SocketLayer::Instance().Find(netCommunication);
    if (connection == nullptr) {
        return -1;
    }
    connection->Stop();
    return 0;
}

HOST_EXPORT int NET_SOCKET_DestroyHNetCommunication(int netCommunication)
{
    const auto connection = SocketLayer::Instance().Remove(netCommunication);
    if (connection == nullptr) {
        return -1;
    }
    connection->Close();
    return 0;
}

HOST_EXPORT unsigned int GetLastError() { return standin_host::LastSocketError(); }

} // extern "C"
