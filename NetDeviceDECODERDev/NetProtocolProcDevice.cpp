#include "NetProtocolProcDevice.h"

#include <cstring>

#include "CmdProcObject.h"
#include "HostFunctions.h"
#include "ThreadLock.h"
#include "Wipe.h"

namespace {

constexpr int QUEUE_HOLDER_TAG = 11; // the host's tag for the queue's reference

// The queue's reference to a command: taken here, released unless a queue entry takes it over.
class CQueueReference {
public:
    explicit CQueueReference(CCmdProcObject* cmd) : m_cmd(cmd) { m_cmd->AddReference(QUEUE_HOLDER_TAG); }
    ~CQueueReference()
    {
        if (m_cmd != nullptr) {
            m_cmd->DecReference(QUEUE_HOLDER_TAG);
        }
    }
    CQueueReference(const CQueueReference&) = delete;
    CQueueReference& operator=(const CQueueReference&) = delete;
    void Release() { m_cmd = nullptr; }

private:
    CCmdProcObject* m_cmd;
};

} // namespace

CNetProtocolProcDevice::CNetProtocolProcDevice() { m_pCmdProcList = new std::list<CMD_PROC_INFO>; }

CNetProtocolProcDevice::~CNetProtocolProcDevice()
{
    if (!m_pCmdProcList->empty()) {
        SHARESDK_AbnormalOutput("ASSERT", "NetProtocolProcDevice", 16);
    }
    delete m_pCmdProcList;
    m_pCmdProcList = nullptr;
}

void CNetProtocolProcDevice::AddOneCmd(CCmdProcObject* cmd, unsigned char* buf, unsigned int len)
{
    CAutoLock lock(m_CmdProcListLock);
    CQueueReference reference(cmd);
    TWipedBytes<BYTE> copy; // a payload may hold passwords
    if (len != 0) {
        copy = MakeWipedBytes<BYTE>(len);
        memcpy(copy.get(), buf, len);
    }
    m_pCmdProcList->push_back({cmd, nullptr, len});
    m_pCmdProcList->back().pBuf = copy.release();
    reference.Release();
}

bool CNetProtocolProcDevice::ProcDevCmd()
{
    CMD_PROC_INFO entry;
    {
        CAutoLock lock(m_CmdProcListLock);
        if (m_pCmdProcList->empty()) {
            return false;
        }
        entry = m_pCmdProcList->front();
        m_pCmdProcList->pop_front();
    }
    const TWipedBytes<BYTE> payload(entry.pBuf, S_WipingDelete{entry.dwLen});
    ProcOneCommand(entry.pCmdProcObject, entry.pBuf, entry.dwLen);
    entry.pCmdProcObject->DecReference(QUEUE_HOLDER_TAG);
    return true;
}

bool CNetProtocolProcDevice::ProcOrvaCmd() { return false; }
