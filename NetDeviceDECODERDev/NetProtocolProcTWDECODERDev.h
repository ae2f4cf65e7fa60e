#pragma once

#include "NetProtocolProcDevice.h"

class CNetProtocolProcTWDECODERDevImp;

// What the host sees of one TV-wall decoder: a thin facade over the session, with the queue as its base.
class CNetProtocolProcTWDECODERDev : public CNetProtocolProcDevice {
public:
    CNetProtocolProcTWDECODERDev();
    ~CNetProtocolProcTWDECODERDev() override;

    int Initial(CNetNode* node, int hNetCommunication, int a, int b) override;
    void Quit() override;
    int Start(char* text, int n) override;
    void Stop() override;
    CNetProtocolProc* CreateSelf() override;
    const char* GetBeatData(unsigned long& len) override;
    bool IsOnline() override;
    bool IsWorking() override;
    void ProcOneCommand(CCmdProcObject* cmd, unsigned char* buf, unsigned int len) override;

private:
    int m_hNetCommunication = 0;                       // the host's handle of the connection
    CNetProtocolProcTWDECODERDevImp* m_pImp = nullptr; // the session, owned
};
