#pragma once

#include "NetProtocolProc.h"

// The first-in-first-out queue between the host's producer threads (AddOneCmd) and its worker thread
// (ProcDevCmd). It starts no thread; a command runs on whichever thread calls ProcDevCmd.
class CNetProtocolProcDevice : public CNetProtocolProc {
public:
    CNetProtocolProcDevice();
    // A queue that still holds commands is reported, not drained: they keep their references and buffers.
    ~CNetProtocolProcDevice() override;

    bool ProcDevCmd() override;
    bool ProcOrvaCmd() override;
    void ProcOneCommand(CCmdProcObject* cmd, unsigned char* buf, unsigned int len) override = 0;
    void AddOneCmd(CCmdProcObject* cmd, unsigned char* buf, unsigned int len) override;
};
