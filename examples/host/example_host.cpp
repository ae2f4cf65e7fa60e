// A host in one file: logs in to a decoder, puts a camera on its wall, and tells of its channels until the
// input ends or the link is lost.
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <thread>
#include <utility>

#include <dlfcn.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "NetNode.h"
#include "tvwall/answers.h"
#include "tvwall/ask.h"
#include "tvwall/host_defaults.h" // memory pool and log
#include "tvwall/receive_buffer.h"

int g_socket = -1; // of the only connection; the handle is ignored
std::thread g_receiver;
std::pair<CSocketDataObserver*, void*> g_observer; // and its context; changes while no receiver runs
std::unique_ptr<CNetProtocolProc> g_decoder;       // made from the plug-in's prototype, which is temporary

void Receive()
{
    tvwall::ReceiveBuffer buffer;
    char chunk[16384];
    for (ssize_t n = 0; (n = recv(g_socket, chunk, sizeof chunk, 0)) > 0;) {
        if (!buffer.Take({chunk, static_cast<std::size_t>(n)}, *g_observer.first, g_observer.second)) {
            shutdown(g_socket, SHUT_RDWR); // too long a message
        }
    }
}

// What the plug-in finds in this process (HostFunctions.h), besides the defaults.
int NET_COMM_RegistDevProtocolProcObject(unsigned int, CNetProtocolProc* p)
{
    return g_decoder.reset(p->CreateSelf()), 0;
}
GUID NET_COMM_GetCurrentAppNodeID() { return {1, 0, 0, {}}; }
int NET_SOCKET_RegisterNode(int, CSocketDataObserver* p, void* c, int, int) { return g_observer = {p, c}, 0; }
int NET_SOCKET_UnRegisterNode(int) { return g_observer = {}, 0; }
int NET_SOCKET_Start(int) { return g_receiver = std::thread(Receive), 0; }
int NET_SOCKET_Stop(int) { return shutdown(g_socket, SHUT_RDWR), g_receiver.join(), 0; }
int NET_SOCKET_DestroyHNetCommunication(int) { return close(g_socket); }

struct Node final : CNetNode {
    void DeliverCommand(unsigned int, CCmdProcParam* param) override
    {
        const auto told = tvwall::ReadNotification(static_cast<const CCmdProcParamMTvwall&>(*param));
        std::printf("notification: %zu channels\n", told ? told->channels.size() : 0);
    }
    bool SendData(const void* data, unsigned long n) override
    { // a host that sends from several threads needs a lock
        return send(g_socket, data, n, MSG_NOSIGNAL) == static_cast<ssize_t>(n);
    }
    bool IsDropRecvData() override { return false; }
    void Disconnect() override { shutdown(g_socket, SHUT_RDWR); }
    GUID GetNodeID() const override { return {2, 0, 0, {}}; }
} g_node;

tvwall::Outcome Run(const char* what, const tvwall::Command& command)
{
    auto outcome = tvwall::Ask(*g_decoder, command);
    while (g_decoder->ProcDevCmd()) {
    } // blocks up to 30 s for each request; a larger host uses a worker thread
    tvwall::Outcome told = outcome.get();
    std::printf("%s: %s\n", what, told.Text());
    return told;
}

bool PutCameraOnWall()
{
    const auto layout = tvwall::ReadLayout(Run("layout", tvwall::GetLayout()).answer);
    std::printf("rows: %ld, columns: %ld\n", layout ? layout->rows : 0, layout ? layout->columns : 0);
    const tvwall::WindowId window{1};
    const tvwall::Source camera{"192.0.2.10", 554, tvwall::ChannelNumber{3}, "viewer", "secret"};
    return layout &&
           Run("screens", tvwall::BindScreens({{{1}, {0, 0}, {}}})) && // output 1; unbound ones stay dark
           Run("window", tvwall::CreateWindows({{window, {0, 0, 960, 540}, {{11}}}})) &&
           Run("media", tvwall::PlayMedia({{window, {{{0}, {camera}}}}})) &&
           !Run("raise of an unknown window", tvwall::RaiseWindow({42})) &&
           Run("system information", tvwall::GetSystemInfo()); // the channels come as a notification
}

int Fail(const char* why) { return std::fprintf(stderr, "example-host: %s\n", why), EXIT_FAILURE; }

int main(int argc, char** argv)
{
    const char* password = std::getenv("TVWALL_PASSWORD");
    addrinfo* address = nullptr;
    if (argc != 4 || password == nullptr) {
        return Fail("usage: TVWALL_PASSWORD=... example-host HOST PORT USER");
    }
    if (getaddrinfo(argv[1], argv[2], nullptr, &address) != 0 ||
        (g_socket = socket(address->ai_family, SOCK_STREAM, 0)) < 0 ||
        connect(g_socket, address->ai_addr, address->ai_addrlen) != 0) {
        return Fail("cannot connect to the decoder");
    }
    freeaddrinfo(address);
    void* plugin = dlopen(TVWALL_PLUGIN_FILE, RTLD_NOW | RTLD_LOCAL);
    if (plugin == nullptr) {
        return Fail(dlerror());
    }
    reinterpret_cast<int (*)()>(dlsym(plugin, "NET_DEV_DECODERDEVSDK_Initial"))();
    g_decoder->Initial(&g_node, 1, 0, 0);
    g_decoder->Start(nullptr, 0);
    const bool done = Run("login", tvwall::LogIn(argv[3], password)) && PutCameraOnWall();
    pollfd ends[] = {{STDIN_FILENO, POLLIN, 0}, {g_socket, POLLRDHUP, 0}}; // of the input, of the link
    const bool lost = done && std::fflush(stdout) == 0 && poll(ends, 2, -1) > 0 && ends[1].revents != 0;
    g_decoder->Stop(); // likewise where the link is gone
    g_decoder->Quit();
    g_decoder.reset(); // while its code is still loaded
    reinterpret_cast<void (*)()>(dlsym(plugin, "NET_DEV_DECODERDEVSDK_Quit"))();
    dlclose(plugin);
    return !done ? Fail("the camera is not on the wall") : lost ? Fail("the link is lost") : EXIT_SUCCESS;
}
