#include "NetProtocolProcTWDECODERDev.h"

#include <new>

#include "HostFunctions.h"
#include "Session/NetProtocolProcTWDECODERDevImp.h"

CNetProtocolProcTWDECODERDev::CNetProtocolProcTWDECODERDev() : m_pImp(new CNetProtocolProcTWDECODERDevImp) {}

CNetProtocolProcTWDECODERDev::~CNetProtocolProcTWDECODERDev()
{
    if (m_pImp != nullptr) {
        delete m_pImp;
        m_pImp = nullptr;
    }
}

int CNetProtocolProcTWDECODERDev::Initial(CNetNode* node, int hNetCommunication, int a, int b)
{
    m_pCurNetNode = node;
    m_hNetCommunication = hNetCommunication;
    return NET_SOCKET_RegisterNode(m_hNetCommunication, static_cast<CSocketDataObserver*>(m_pImp), m_pImp, a,
                                   b);
}

void CNetProtocolProcTWDECODERDev::Quit()
{
    NET_SOCKET_UnRegisterNode(m_hNetCommunication);
    NET_SOCKET_DestroyHNetCommunication(m_hNetCommunication);
}

int CNetProtocolProcTWDECODERDev::Start(char* text, int n)
{
    const int nResult = m_pImp->Start(m_pCurNetNode, text, n);
    NET_SOCKET_Start(m_hNetCommunication);
    return nResult;
}

void CNetProtocolProcTWDECODERDev::Stop()
{
    m_pImp->Stop();
    while (ProcDevCmd()) { // the stopped session refuses what is still queued
    }
    NET_SOCKET_Stop(m_hNetCommunication);
}

CNetProtocolProc* CNetProtocolProcTWDECODERDev::CreateSelf()
{
    try {
        return new CNetProtocolProcTWDECODERDev;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

const char* CNetProtocolProcTWDECODERDev::GetBeatData(unsigned long& len) { return m_pImp->GetBeatData(len); }

bool CNetProtocolProcTWDECODERDev::IsOnline() { return m_pImp->IsOnline(); }

bool CNetProtocolProcTWDECODERDev::IsWorking() { return false; }

void CNetProtocolProcTWDECODERDev::ProcOneCommand(CCmdProcObject* cmd, unsigned char* buf, unsigned int len)
{
    m_pImp->ProcOneCommand(cmd, buf, len);
}
