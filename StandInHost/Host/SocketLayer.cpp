#include "Host/SocketLayer.h"

#include <utility>

#include "Host/HostExport.h"

namespace standin_host {

CSocketLayer& CSocketLayer::Instance()
{
    static CSocketLayer s_layer;
    return s_layer;
}

int CSocketLayer::Add(std::shared_ptr<CConnection> pConnection)
{
    const TMutexGuard guard(m_lock);
    m_connections.emplace(++m_nLastHandle, std::move(pConnection));
    return m_nLastHandle;
}

std::shared_ptr<CConnection> CSocketLayer::Find(int nHandle) const
{
    const TMutexGuard guard(m_lock);
    const auto it = m_connections.find(nHandle);
    return it == m_connections.end() ? nullptr : it->second;
}

std::shared_ptr<CConnection> CSocketLayer::Remove(int nHandle)
{
    const TMutexGuard guard(m_lock);
    const auto node = m_connections.extract(nHandle);
    return node.empty() ? nullptr : node.mapped();
}

} // namespace standin_host

using standin_host::CSocketLayer;

// 0 on success, -1 for a handle that names no connection.
extern "C" {

HOST_EXPORT int NET_SOCKET_RegisterNode(int hNetCommunication, CSocketDataObserver* pObserver, void* pContext,
                                        int /*a*/, int /*b*/)
{
    const auto pConnection = CSocketLayer::Instance().Find(hNetCommunication);
    if (pConnection == nullptr || pObserver == nullptr) {
        return -1;
    }
    pConnection->SetObserver(pObserver, pContext);
    return 0;
}

HOST_EXPORT int NET_SOCKET_UnRegisterNode(int hNetCommunication)
{
    const auto pConnection = CSocketLayer::Instance().Find(hNetCommunication);
    if (pConnection == nullptr) {
        return -1;
    }
    pConnection->ClearObserver();
    return 0;
}

HOST_EXPORT int NET_SOCKET_Start(int hNetCommunication)
{
    const auto pConnection = CSocketLayer::Instance().Find(hNetCommunication);
    if (pConnection == nullptr) {
        return -1;
    }
    pConnection->Start(hNetCommunication);
    return 0;
}

HOST_EXPORT int NET_SOCKET_Stop(int hNetCommunication)
{
    const auto pConnection = CSocketLayer::Instance().Find(hNetCommunication);
    if (pConnection == nullptr) {
        return -1;
    }
    pConnection->Stop();
    return 0;
}

HOST_EXPORT int NET_SOCKET_DestroyHNetCommunication(int hNetCommunication)
{
    const auto pConnection = CSocketLayer::Instance().Remove(hNetCommunication);
    if (pConnection == nullptr) {
        return -1;
    }
    pConnection->Close();
    return 0;
}

HOST_EXPORT unsigned int GetLastError() { return standin_host::LastSocketError(); }

} // extern "C"
