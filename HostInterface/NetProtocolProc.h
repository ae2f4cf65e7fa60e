#pragma once
// The interface through which the host drives one kind of device.

#include <cstddef>
#include <list>

#include "HostTypes.h"
#include "Lock.h"

class CCmdProcObject;
class CNetNode;

// The host calls the operations through this class, so their order is binary contract: thirteen entries, the
// destructor eleventh. Expected calling order: CreateSelf, Initial, Start, then any number of AddOneCmd,
// ProcDevCmd, GetBeatData and IsOnline, then Stop, Quit and the destructor.
class CNetProtocolProc {
public:
    // One queued command.
    struct CMD_PROC_INFO {
        CCmdProcObject* pCmdProcObject; // the queue holds one reference on it
        BYTE* pBuf;                     // private copy of the payload, new[]; null when there is none
        uint32_t dwLen;                 // bytes in pBuf
    };

    CNetProtocolProc() = default;
    CNetProtocolProc(const CNetProtocolProc&) = delete;
    CNetProtocolProc& operator=(const CNetProtocolProc&) = delete;

    // Binds the processor to its node and connection; returns the host's registration result.
    virtual int Initial(CNetNode* /*node*/, int /*hNetCommunication*/, int /*a*/, int /*b*/) { return 0; }
    // Unregisters the node and destroys the connection; the last call before destruction.
    virtual void Quit() {}
    virtual int Start(char* /*text*/, int /*n*/) { return 0; }
    // Never concurrently with Start.
    virtual void Stop() {}
    // Runs one queued command on the calling thread; false when the queue was empty.
    virtual bool ProcDevCmd() { return false; }
    virtual bool ProcOrvaCmd() { return false; }
    // A new processor of the same kind; the caller owns it.
    virtual CNetProtocolProc* CreateSelf() { return nullptr; }
    // The heartbeat to send, owned by the plug-in; len receives its size in bytes.
    virtual const char* GetBeatData(unsigned long& len)
    {
        len = 0;
        return nullptr;
    }
    // To be asked at a steady pace: each question counts against the device until bytes arrive from it.
    virtual bool IsOnline() { return false; }
    virtual bool IsWorking() { return false; }
    virtual ~CNetProtocolProc() = default;
    // Executes one command; buf is valid during the call only.
    virtual void ProcOneCommand(CCmdProcObject* cmd, unsigned char* buf, unsigned int len) = 0;
    // Queues a command from any thread; the len bytes at buf are copied. Throws std::bad_alloc when the copy
    // cannot be made; nothing is queued then.
    virtual void AddOneCmd(CCmdProcObject* cmd, unsigned char* buf, unsigned int len) = 0;

protected:
    CNetNode* m_pCurNetNode = nullptr; // the node this processor serves, owned by the host
    // Owned by the queue class.
    std::list<CMD_PROC_INFO>* m_pCmdProcList TVWALL_PT_GUARDED_BY(m_CmdProcListLock) = nullptr;
    CLock m_CmdProcListLock;
};

static_assert(sizeof(CNetProtocolProc::CMD_PROC_INFO) == 24);
static_assert(offsetof(CNetProtocolProc::CMD_PROC_INFO, pBuf) == 8);
static_assert(offsetof(CNetProtocolProc::CMD_PROC_INFO, dwLen) == 16);
static_assert(sizeof(CNetProtocolProc) ==
              3 * sizeof(void*) + sizeof(CLock)); // the virtual table and two pointers
