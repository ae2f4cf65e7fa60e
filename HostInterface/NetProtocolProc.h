#pragma once
// The interface through which the host drives one kind of device.

#include <cstddef>
#include <list>

#include "HostTypes.h"
#include "ThreadLock.h"

class CCmdProcObject;
class CNetNode;

// The host calls the operations through this class, so their order is part of the ABI: thirteen entries, the
// destructor eleventh. Expected call order: CreateSelf, Initial, Start, then any number of AddOneCmd,
// ProcDevCmd, GetBeatData and IsOnline, then Stop, Quit and the destructor.
class CNetProtocolProc {
public:
    // One queued command.
    struct CMD_PROC_INFO {
        CCmdProcObject* pCmdProcObject; // the queue holds one reference to it
        BYTE* pBuf;                     // private copy of the payload, new[]; null when there is none
        uint32_t dwLen;                 // bytes in pBuf
    };

    CNetProtocolProc() = default;
    CNetProtocolProc(const CNetProtocolProc&) = delete;
    CNetProtocolProc& operator=(const CNetProtocolProc&) = delete;

    // Binds the processor to its node and connection, which is open; returns the result of
    // NET_SOCKET_RegisterNode, which is given a and b. After a failure it may be called again, or the
    // processor be deleted at once; the connection is the host's unless Quit is called.
    virtual int Initial(CNetNode* /*node*/, int /*hNetCommunication*/, int /*a*/, int /*b*/) { return 0; }
    // Unregisters the node and destroys the connection, without a word to the decoder; the last call before
    // destruction.
    virtual void Quit() {}
    // Bytes may be received from now on. Both arguments are ignored; the result is 0.
    virtual int Start(char* /*text*/, int /*n*/) { return 0; }
    // Ends the wait of the running command within about 100 ms (one that is reading a reply finishes first;
    // one that is enciphering stops before the next text), answers queued ones on the calling thread and
    // waits until no receive is running; so never call it inside a callback or on the receive thread. Never
    // concurrently with Start or another Stop.
    virtual void Stop() {}
    // Runs one queued command on the calling thread, always the same one; false when the queue was empty.
    // Blocks until the command is answered, at most 30 s for each request that it takes (login and system
    // information take two), plus as long as the socket is full.
    virtual bool ProcDevCmd() { return false; }
    virtual bool ProcOrvaCmd() { return false; }
    // A new processor of the same kind; the caller owns it. Null when there is no memory.
    virtual CNetProtocolProc* CreateSelf() { return nullptr; }
    // The heartbeat, owned by the plug-in and always valid; len receives its size in bytes. The host sends it
    // at its own pace, as early as it likes.
    virtual const char* GetBeatData(unsigned long& len)
    {
        len = 0;
        return nullptr;
    }
    // Call at a steady pace: each call counts against the device until a heartbeat or a message arrives from
    // it, which needs Start; false from the 17th on. True at first, even before login.
    virtual bool IsOnline() { return false; }
    virtual bool IsWorking() { return false; }
    virtual ~CNetProtocolProc() = default;
    // Executes one command; buf is valid during the call only.
    virtual void ProcOneCommand(CCmdProcObject* cmd, unsigned char* buf, unsigned int len) = 0;
    // Queues a command from any thread; the len bytes at buf are copied. Without a payload buf may be null
    // and len is 0. Throws std::bad_alloc when the copy cannot be made; nothing is queued then. Wakes no
    // thread.
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
