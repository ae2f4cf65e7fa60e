#pragma once
// A host command: what was asked, whether an answer is wanted, and the two ways to give it.

#include "TvwallProtocol.h"

// Reference-counted by the host. A holder that keeps the pointer beyond a call has one reference; every
// AddReference is paired with a DecReference that carries the same holder tag. The plug-in's queue uses the
// tag 11: AddReference in AddOneCmd, DecReference once the command has run, on any thread.
class CCmdProcObject {
public:
    // Host command id, a value of ORVA_NET_PROTOCOL::_net_protocol_cmd_def_.
    virtual unsigned int GetRequestCommand() const = 0;
    // True when the host waits for an answer to this command.
    virtual bool HasReply() const = 0;

    virtual void AddReference(int nHolderTag) = 0;
    virtual void DecReference(int nHolderTag) = 0;

    // The two answers. A command gets at most one of them, and some get none: on the worker thread inside
    // ProcDevCmd, or inside Stop on the thread that calls it. The host copies what it needs during the call.
    // A failure:
    virtual void ReplyRecord(const ORVA_NET_PROTOCOL::_kest_net_reply& reply) = 0;
    // A success. An answer without data has nLen 0, and pData may be null then.
    virtual void ReplyBuffer(const char* pData, unsigned long nLen) = 0;

protected:
    ~CCmdProcObject() = default;
};
