// A host in one file: loads the installed plug-in, logs in to a decoder and prints the layout of its wall.
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include <dlfcn.h>
#include <netdb.h>
#include <sys/socket.h>
#include <unistd.h>

#include "CmdProcObject.h"
#include "HostFunctions.h"
#include "NetNode.h"
#include "NetProtocolProc.h"
#include "SocketDataObserver.h"

using namespace ORVA_NET_PROTOCOL;
int g_nSocket = -1; // of the only connection; the handle is ignored
std::thread g_receiver;
std::pair<CSocketDataObserver*, void*> g_sink; // observer and its context; changes while no receiver runs
std::unique_ptr<CNetProtocolProc> g_pDecoder;  // made from the plug-in's prototype, which is temporary

void Receive()
{
    char chunk[16384];
    for (ssize_t n = 0; (n = recv(g_nSocket, chunk, sizeof chunk, 0)) > 0;) {
        g_sink.first->OnSocketRecvData(1, chunk, static_cast<unsigned int>(n), nullptr, g_sink.second);
    }
}

struct SBuffer {
    std::string bytes;
    std::atomic<int> nReferences{1};
};
SBuffer& At(const char* h) { return *reinterpret_cast<SBuffer*>(const_cast<char*>(h)); }

// What the plug-in finds in this process, as HostFunctions.h says. This host does not handle running out of
// memory.
int NET_COMM_RegistDevProtocolProcObject(unsigned int, CNetProtocolProc* pPrototype)
{
    return g_pDecoder.reset(pPrototype->CreateSelf()), 0;
}
GUID NET_COMM_GetCurrentAppNodeID() { return {1, 0, 0, {}}; }
int NET_SOCKET_RegisterNode(int, CSocketDataObserver* p, void* c, int, int) { return g_sink = {p, c}, 0; }
int NET_SOCKET_UnRegisterNode(int) { return g_sink = {}, 0; }
int NET_SOCKET_Start(int) { return g_receiver = std::thread(Receive), 0; }
int NET_SOCKET_Stop(int) { return shutdown(g_nSocket, SHUT_RDWR), g_receiver.join(), 0; }
int NET_SOCKET_DestroyHNetCommunication(int) { return close(g_nSocket); }
unsigned int GetLastError() { return 0; } // a failed send is final
char* MEM_POOL_New(const char* p, unsigned long n) { return reinterpret_cast<char*>(new SBuffer{{p, n}}); }
void MEM_POOL_AddRef(const char* h) { ++At(h).nReferences; }
void MEM_POOL_Delete(const char* h) { delete (--At(h).nReferences == 0 ? &At(h) : nullptr); }
const char* MEM_POOL_GetData(const char* h) { return At(h).bytes.data(); }
unsigned long MEM_POOL_GetLen(const char* h) { return At(h).bytes.size(); }
bool MEM_POOL_Append(const char* h, const char* p, unsigned long n) { return At(h).bytes.append(p, n), true; }
void MEM_POOL_TruncateFront(const char* h, unsigned long n) { At(h).bytes.erase(0, n); }
void MEM_POOL_TruncateBack(const char*, unsigned long) { std::abort(); } // the plug-in does not call it
void SHARESDK_NormalOutput(const char*, const char*, int) {}
void SHARESDK_AbnormalOutput(const char* szText, const char*, int) { std::fprintf(stderr, "%s\n", szText); }
void SHARESDK_DebugOutput(const char*, const char*, int) {}

struct CNode final : CNetNode {
    void DeliverCommand(unsigned int, CCmdProcParam*) override {} // a notification
    bool SendData(const void* pData, unsigned long nLen) override
    { // a host that sends from several threads needs a lock
        return send(g_nSocket, pData, nLen, MSG_NOSIGNAL) == static_cast<ssize_t>(nLen);
    }
    bool IsDropRecvData() override { return false; }
    void Disconnect() override { shutdown(g_nSocket, SHUT_RDWR); }
    GUID GetNodeID() const override { return {2, 0, 0, {}}; }
} g_node;

struct CCommand final : CCmdProcObject {
    explicit CCommand(unsigned int nCmdID) : m_nCmdID(nCmdID) {}
    unsigned int GetRequestCommand() const override { return m_nCmdID; }
    bool HasReply() const override { return true; }
    void AddReference(int) override {} // it outlives the queue's reference
    void DecReference(int) override {}
    void ReplyRecord(const _kest_net_reply& reply) override { m_nResult = reply.dwResult; }
    void ReplyBuffer(const char* p, unsigned long n) override { m_strAnswer.assign(p, n), m_nResult = 0; }
    const unsigned int m_nCmdID;
    unsigned int m_nResult = 0xFFFFFFFF; // no answer yet
    std::string m_strAnswer;
};

unsigned int Run(CCommand& command, void* pPayload, unsigned int nLen)
{
    g_pDecoder->AddOneCmd(&command, static_cast<unsigned char*>(pPayload), nLen);
    while (g_pDecoder->ProcDevCmd()) {
    } // blocks up to 30 s for each request; a larger host uses a worker thread
    return command.m_nResult;
}

void PrintLayout(const std::string& strLayout)
{
    unsigned int head[3] = {}; // rows, columns, number of screens; the screens follow as they are in memory
    std::size_t nAt = strLayout.copy(reinterpret_cast<char*>(head), sizeof head);
    std::printf("wall of %u x %u screens\n", head[0], head[1]);
    struct {
        unsigned int nNumber;
        char szName[256];
        unsigned int nX, nY;
    } s;
    for (; strLayout.copy(reinterpret_cast<char*>(&s), sizeof s, nAt) == sizeof s; nAt += sizeof s) {
        std::printf("screen %u at column %u, row %u: %.256s\n", s.nNumber, s.nX, s.nY, s.szName);
    }
}

int Fail(const char* szWhy) { return std::fprintf(stderr, "example-host: %s\n", szWhy), EXIT_FAILURE; }

int main(int argc, char** argv)
{
    const char* szPassword = std::getenv("TVWALL_PASSWORD");
    if (argc != 4 || szPassword == nullptr) {
        return Fail("usage: TVWALL_PASSWORD=... example-host HOST PORT USER");
    }
    addrinfo* pAddress = nullptr;
    if (getaddrinfo(argv[1], argv[2], nullptr, &pAddress) != 0 ||
        (g_nSocket = socket(pAddress->ai_family, SOCK_STREAM, 0)) < 0 ||
        connect(g_nSocket, pAddress->ai_addr, pAddress->ai_addrlen) != 0) {
        return Fail("cannot connect to the decoder");
    }
    freeaddrinfo(pAddress);
    void* pPlugin = dlopen(TVWALL_PLUGIN_FILE, RTLD_NOW | RTLD_LOCAL);
    if (pPlugin == nullptr) {
        return Fail(dlerror());
    }
    reinterpret_cast<int (*)()>(dlsym(pPlugin, "NET_DEV_DECODERDEVSDK_Initial"))();
    g_pDecoder->Initial(&g_node, 1, 0, 0);
    g_pDecoder->Start(nullptr, 0);
    _kest_net_login_info account{};
    std::snprintf(account.username, sizeof account.username, "%s", argv[3]);
    std::snprintf(account.password, sizeof account.password, "%s", szPassword);
    CCommand login(KEST_CMD_REQUEST_LOGIN), layout(KEST_CMD_TVWALL_DECODE_GET_WALL_LAYOUT);
    unsigned int nResult = Run(login, &account, sizeof account);
    nResult = nResult == 0 ? Run(layout, nullptr, 0) : nResult;
    g_pDecoder->Stop();
    g_pDecoder->Quit();
    g_pDecoder.reset(); // while its code is still loaded
    reinterpret_cast<void (*)()>(dlsym(pPlugin, "NET_DEV_DECODERDEVSDK_Quit"))();
    dlclose(pPlugin);
    if (nResult != 0) {
        return std::fprintf(stderr, "example-host: failure 0x%08X\n", nResult), EXIT_FAILURE;
    }
    PrintLayout(layout.m_strAnswer);
}
