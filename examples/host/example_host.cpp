// A host in one file: loads the installed plug-in, logs in to a decoder over TCP and prints the layout of its
// wall. A host that stays connected also sends GetBeatData and asks IsOnline, both at a steady pace.
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>

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
int g_nSocket = -1; // of the only connection, whatever the handle
std::thread g_receiver;
CSocketDataObserver* g_pObserver = nullptr;   // changes only while no receiver runs
std::unique_ptr<CNetProtocolProc> g_pDecoder; // made of the plug-in's prototype, which does not last

void Receive()
{
    char chunk[16384];
    for (ssize_t n = 0; (n = recv(g_nSocket, chunk, sizeof chunk, 0)) > 0;) {
        // Without a place for the length that it needs, the plug-in itself keeps what is incomplete.
        g_pObserver->OnSocketRecvData(1, chunk, static_cast<unsigned int>(n), nullptr, nullptr);
    }
}

struct SBuffer : std::string {
    using std::string::string;
    std::atomic<int> nReferences{1};
};
SBuffer& At(const char* h) { return *reinterpret_cast<SBuffer*>(const_cast<char*>(h)); }

// What the plug-in finds in this process; HostFunctions.h says what each does. This host ends without memory.
int NET_COMM_RegistDevProtocolProcObject(unsigned int, CNetProtocolProc* pPrototype)
{
    return g_pDecoder.reset(pPrototype->CreateSelf()), 0;
}
GUID NET_COMM_GetCurrentAppNodeID() { return {1, 0, 0, {}}; }
int NET_SOCKET_RegisterNode(int, CSocketDataObserver* p, void*, int, int) { return g_pObserver = p, 0; }
int NET_SOCKET_UnRegisterNode(int) { return g_pObserver = nullptr, 0; }
int NET_SOCKET_Start(int) { return g_receiver = std::thread(Receive), 0; }
int NET_SOCKET_Stop(int) { return shutdown(g_nSocket, SHUT_RDWR), g_receiver.join(), 0; }
int NET_SOCKET_DestroyHNetCommunication(int) { return close(g_nSocket); }
unsigned int GetLastError() { return 0; } // a send that fails has failed for good
char* MEM_POOL_New(const char* p, unsigned long n) { return reinterpret_cast<char*>(new SBuffer(p, n)); }
void MEM_POOL_AddRef(const char* h) { ++At(h).nReferences; }
void MEM_POOL_Delete(const char* h) { delete (--At(h).nReferences == 0 ? &At(h) : nullptr); }
const char* MEM_POOL_GetData(const char* h) { return At(h).data(); }
unsigned long MEM_POOL_GetLen(const char* h) { return At(h).size(); }
bool MEM_POOL_Append(const char* h, const char* p, unsigned long n) { return At(h).append(p, n), true; }
void MEM_POOL_TruncateFront(const char* h, unsigned long n) { At(h).erase(0, n); }
void MEM_POOL_TruncateBack(const char* h, unsigned long n) { At(h).resize(std::max(At(h).size(), n) - n); }
void SHARESDK_NormalOutput(const char*, const char*, int) {}
void SHARESDK_AbnormalOutput(const char* szText, const char*, int) { std::fprintf(stderr, "%s\n", szText); }
void SHARESDK_DebugOutput(const char*, const char*, int) {}

struct CNode final : CNetNode {
    void DeliverCommand(unsigned int, CCmdProcParam*) override {} // a notification
    bool SendData(const void* pData, unsigned long nLen) override
    {
        static std::mutex s_lock;
        const std::lock_guard guard(s_lock); // two messages must not mix
        return send(g_nSocket, pData, nLen, MSG_NOSIGNAL) == static_cast<ssize_t>(nLen);
    }
    bool IsDropRecvData() override { return false; }
    void Disconnect() override { shutdown(g_nSocket, SHUT_RDWR); }
    GUID GetNodeID() const override { return {2, 0, 0, {}}; }
};

// The last reference takes it away; who waits for an answer that was not given then gets a std::future_error.
struct CCommand final : CCmdProcObject {
    explicit CCommand(unsigned int nCmdID) : m_nCmdID(nCmdID) {}
    unsigned int GetRequestCommand() const override { return m_nCmdID; }
    bool HasReply() const override { return true; }
    void AddReference(int) override { ++m_nReferences; }
    void DecReference(int) override { delete (--m_nReferences == 0 ? this : nullptr); }
    void ReplyRecord(const _kest_net_reply& reply) override
    {
        char szFailure[32];
        std::snprintf(szFailure, sizeof szFailure, "failure 0x%08X", reply.dwResult);
        m_answer.set_exception(std::make_exception_ptr(std::runtime_error(szFailure)));
    }
    void ReplyBuffer(const char* pData, unsigned long nLen) override { m_answer.set_value({pData, nLen}); }
    const unsigned int m_nCmdID;
    std::atomic<int> m_nReferences{0};
    std::promise<std::string> m_answer;
};

std::future<std::string> Queue(unsigned int nCmdID, void* pPayload, unsigned int nLen)
{
    auto* pCommand = new CCommand(nCmdID);
    auto answer = pCommand->m_answer.get_future();
    g_pDecoder->AddOneCmd(pCommand, static_cast<unsigned char*>(pPayload), nLen); // holds a reference
    return answer;
}

// Rows, columns, number of screens; then 268 bytes for each screen: number, name of 256 bytes, x, y.
void PrintLayout(const std::string& strLayout)
{
    const auto Number = [&strLayout](std::size_t nAt) {
        unsigned int nNumber = 0;
        strLayout.copy(reinterpret_cast<char*>(&nNumber), sizeof nNumber, nAt); // throws beyond the end
        return nNumber;
    };
    std::printf("wall of %u x %u screens\n", Number(0), Number(4));
    for (std::size_t nAt = 12, nLeft = Number(8); nLeft != 0; nAt += 268, --nLeft) {
        std::printf("screen %u at column %u, row %u: %s\n", Number(nAt), Number(nAt + 260), Number(nAt + 264),
                    strLayout.substr(nAt + 4, 256).c_str());
    }
}

int main(int argc, char** argv)
try {
    const char* szPassword = std::getenv("TVWALL_PASSWORD");
    if (argc != 4 || szPassword == nullptr) {
        throw std::runtime_error("usage: TVWALL_PASSWORD=... example-host HOST PORT USER");
    }
    addrinfo* pAddress = nullptr;
    if (getaddrinfo(argv[1], argv[2], nullptr, &pAddress) != 0 ||
        (g_nSocket = socket(pAddress->ai_family, SOCK_STREAM, 0)) < 0 ||
        connect(g_nSocket, pAddress->ai_addr, pAddress->ai_addrlen) != 0) {
        throw std::runtime_error(std::string("cannot connect to ") + argv[1] + " port " + argv[2]);
    }
    freeaddrinfo(pAddress);
    void* pPlugin = dlopen(TVWALL_PLUGIN_FILE, RTLD_NOW | RTLD_LOCAL);
    if (pPlugin == nullptr) {
        throw std::runtime_error(dlerror());
    }
    reinterpret_cast<int (*)()>(dlsym(pPlugin, "NET_DEV_DECODERDEVSDK_Initial"))();
    CNode node;
    g_pDecoder->Initial(&node, 1, 0, 0);
    g_pDecoder->Start(nullptr, 0);
    _kest_net_login_info account{};
    std::snprintf(account.username, sizeof account.username, "%s", argv[3]);
    std::snprintf(account.password, sizeof account.password, "%s", szPassword);
    auto login = Queue(KEST_CMD_REQUEST_LOGIN, &account, sizeof account);
    auto layout = Queue(KEST_CMD_TVWALL_DECODE_GET_WALL_LAYOUT, nullptr, 0);
    std::thread worker([] { // a host with more to do lets it wait for further commands
        while (g_pDecoder->ProcDevCmd()) {
        }
    });
    worker.join(); // each command is answered by then, or never will be
    g_pDecoder->Stop();
    g_pDecoder->Quit();
    g_pDecoder.reset(); // while its code is loaded
    reinterpret_cast<void (*)()>(dlsym(pPlugin, "NET_DEV_DECODERDEVSDK_Quit"))();
    dlclose(pPlugin);
    login.get();
    PrintLayout(layout.get());
} catch (const std::exception& error) {
    std::fprintf(stderr, "example-host: %s\n", error.what());
    return EXIT_FAILURE;
}
