#include "Session/NetProtocolProcTWDECODERDevImp.h"

#include "AtomicAccess.h"
#include "Link/DeviceReply.h"
#include "MarkupSTL.h"

namespace {

constexpr unsigned long FIRST_BUFFER_LEN = 1024;
constexpr unsigned int WAIT_FOR_RUNNING_WORK = 0xFFFFFFFF; // ms: in effect without limit
constexpr int OFFLINE_AFTER_CHECKS = 17;                   // consecutive liveness checks without a frame

} // namespace

void DevReplyMessage::ClearData()
{
    s_pubkey1.clear();
    s_pubkey2.clear();
    s_sessionId.clear();
    s_token.clear();
}

CNetProtocolProcTWDECODERDevImp::CNetProtocolProcTWDECODERDevImp()
    : m_TmpbufferLen(FIRST_BUFFER_LEN), m_BufMaxLen(FIRST_BUFFER_LEN)
{
    // Owned by locals until nothing more can throw: the destructor does not run when the constructor fails.
    auto pTmpBuffer = std::make_unique<char[]>(FIRST_BUFFER_LEN);
    auto pBufferReply = std::make_unique<char[]>(FIRST_BUFFER_LEN);
    auto pFirst = std::make_unique<CMyEvent>(false);
    auto pStop = std::make_unique<CMyEvent>(true);

    m_pTmpBuffer = pTmpBuffer.release();
    m_pBufferReply = pBufferReply.release();
    m_ArrayEvent[0] = pFirst.release();
    m_ArrayEvent[1] = pStop.release();
    m_ExportEvent.SetEvent();
    m_ImportEvent.SetEvent();
}

CNetProtocolProcTWDECODERDevImp::~CNetProtocolProcTWDECODERDevImp()
{
    delete[] m_pTmpBuffer;
    delete[] m_pBufferReply;
    delete m_ArrayEvent[0];
    delete m_ArrayEvent[1];
}

int CNetProtocolProcTWDECODERDevImp::Start(CNetNode* node, char* /*text*/, int /*n*/)
{
    AtomicStore(m_RunFlag, 1);
    AtomicStore(m_pCurNetNode, node);
    m_NetPacketProc.Initial(&CNetProtocolProcTWDECODERDevImp::PacketProcCallback, this);
    return 0;
}

void CNetProtocolProcTWDECODERDevImp::Stop()
{
    // The two flags are never reset: a stopped session stays deaf and refuses commands even if it is started
    // again.
    AtomicStore(m_RunFlag, 0);
    m_ExportFlag.SetValue(0);
    m_ImportFlag.SetValue(0);
    m_ArrayEvent[1]->SetEvent();
    m_ExportEvent.WaitEvent(WAIT_FOR_RUNNING_WORK);
    m_ImportEvent.WaitEvent(WAIT_FOR_RUNNING_WORK);
    m_NetPacketProc.Destroy();
    m_ArrayEvent[1]->ResetEvent();
}

bool CNetProtocolProcTWDECODERDevImp::IsOnline()
{
    if (!m_bSupportBeat) {
        return true;
    }
    return m_keepBeat.Increment() < OFFLINE_AFTER_CHECKS;
}

const char* CNetProtocolProcTWDECODERDevImp::GetBeatData(unsigned long& len)
{
    return m_NetPacketProc.GetBeatData(len);
}
