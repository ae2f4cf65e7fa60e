#include "FakeHost.h"

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <new>

#include "HostFunctions.h"
#include "NetProtocolProc.h"

namespace {

struct PoolBuffer {
    std::atomic<int> references{1};
    std::string bytes;
};

std::mutex g_logMutex;
std::vector<fake_host::LogLine> g_logs;
std::atomic<bool> g_recording{true};
std::atomic<long> g_liveBuffers{0};
std::atomic<long> g_poolBytes{0};
std::atomic<int> g_failPoolAllocation{0};
thread_local unsigned int g_lastError = 0;

PoolBuffer& FromHandle(const char* buffer)
{
    return *reinterpret_cast<PoolBuffer*>(const_cast<char*>(buffer));
}

bool PoolFails() { return g_failPoolAllocation > 0 && --g_failPoolAllocation == 0; }

void Record(fake_host::LogLevel level, const char* text, const char* source, int line)
{
    if (g_recording) {
        std::lock_guard lock(g_logMutex);
        g_logs.push_back({level, text, source, line});
    }
}

int RecordCall(fake_host::Call call, int result = 0)
{
    fake_host::Get().onCall(call);
    fake_host::Get().calls.push_back(std::move(call));
    return result;
}

} // namespace

namespace fake_host {

State& Get()
{
    static State state;
    return state;
}

void Reset()
{
    Get() = State();
    SetLogRecording(true);
    FailPoolAllocation(0);
    SetLastError(0);
    std::lock_guard lock(g_logMutex);
    g_logs.clear();
}

std::vector<LogLine> Logs()
{
    std::lock_guard lock(g_logMutex);
    return g_logs;
}

int CountLogs(LogLevel level, const std::string& source, int line, const std::string& text)
{
    const auto logs = Logs();
    return static_cast<int>(std::count_if(logs.begin(), logs.end(), [&](const LogLine& log) {
        return log.level == level && log.source == source && log.line == line &&
               (text.empty() || log.text == text);
    }));
}

int CountAsserts(const std::string& source, int line)
{
    return CountLogs(LogLevel::Abnormal, source, line, "ASSERT");
}

void SetLogRecording(bool on) { g_recording = on; }
long LiveBuffers() { return g_liveBuffers; }
long PoolBytes() { return g_poolBytes; }
void FailPoolAllocation(int n) { g_failPoolAllocation = n; }
void SetLastError(unsigned int error) { g_lastError = error; }

} // namespace fake_host

extern "C" {

int NET_COMM_RegistDevProtocolProcObject(unsigned int type, CNetProtocolProc* prototype)
{
    auto& state = fake_host::Get();
    state.registeredType = type;
    state.created = [prototype]() noexcept { return prototype->CreateSelf(); }(); // a host catches nothing
    return state.registDevResult;
}

GUID NET_COMM_GetCurrentAppNodeID() { return fake_host::Get().appNodeID; }

int NET_SOCKET_RegisterNode(int netCommunication, CSocketDataObserver* observer, void* context, int a, int b)
{
    return RecordCall({"RegisterNode", netCommunication, observer, context, a, b},
                      fake_host::Get().registerNodeResult);
}

int NET_SOCKET_UnRegisterNode(int netCommunication)
{
    return RecordCall({"UnRegisterNode", netCommunication});
}

int NET_SOCKET_Start(int netCommunication)
{
    return RecordCall({"Start", netCommunication}, fake_host::Get().startResult);
}

int NET_SOCKET_Stop(int netCommunication) { return RecordCall({"Stop", netCommunication}); }

int NET_SOCKET_DestroyHNetCommunication(int netCommunication)
{
    return RecordCall({"DestroyHNetCommunication", netCommunication});
}

unsigned int GetLastError() { return g_lastError; }

char* MEM_POOL_New(const char* data, unsigned long len)
try {
    if (PoolFails()) {
        return nullptr;
    }
    auto buffer = std::make_unique<PoolBuffer>();
    buffer->bytes.assign(data, len);
    g_poolBytes += static_cast<long>(len);
    ++g_liveBuffers;
    return reinterpret_cast<char*>(buffer.release());
} catch (const std::bad_alloc&) { // a host's pool throws nothing
    return nullptr;
}

void MEM_POOL_AddRef(const char* buffer) { ++FromHandle(buffer).references; }

void MEM_POOL_Delete(const char* buffer)
{
    if (--FromHandle(buffer).references == 0) {
        delete &FromHandle(buffer);
        --g_liveBuffers;
    }
}

const char* MEM_POOL_GetData(const char* buffer) { return FromHandle(buffer).bytes.data(); }
unsigned long MEM_POOL_GetLen(const char* buffer) { return FromHandle(buffer).bytes.size(); }

bool MEM_POOL_Append(const char* buffer, const char* data, unsigned long len)
try {
    if (PoolFails()) {
        return false;
    }
    FromHandle(buffer).bytes.append(data, len);
    g_poolBytes += static_cast<long>(len);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

void MEM_POOL_TruncateFront(const char* buffer, unsigned long len)
{
    auto& bytes = FromHandle(buffer).bytes;
    bytes.erase(0, std::min<size_t>(len, bytes.size()));
}

void SHARESDK_NormalOutput(const char* text, const char* source, int line)
{
    Record(fake_host::LogLevel::Normal, text, source, line);
}

void SHARESDK_AbnormalOutput(const char* text, const char* source, int line)
{
    Record(fake_host::LogLevel::Abnormal, text, source, line);
}

void SHARESDK_DebugOutput(const char* text, const char* source, int line)
{
    Record(fake_host::LogLevel::Debug, text, source, line);
}

} // extern "C"
