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
std::atomic<bool> g_bRecord{true};
std::atomic<long> g_liveBuffers{0};
std::atomic<long> g_poolBytes{0};
std::atomic<int> g_failPoolAllocation{0};
thread_local unsigned int t_lastError = 0;

PoolBuffer& FromHandle(const char* hBuffer)
{
    return *reinterpret_cast<PoolBuffer*>(const_cast<char*>(hBuffer));
}

bool PoolFails() { return g_failPoolAllocation > 0 && --g_failPoolAllocation == 0; }

void Record(fake_host::LogLevel level, const char* szText, const char* szSource, int nLine)
{
    if (g_bRecord) {
        std::lock_guard lock(g_logMutex);
        g_logs.push_back({level, szText, szSource, nLine});
    }
}

int RecordCall(fake_host::Call call, int nResult = 0)
{
    fake_host::Get().onCall(call);
    fake_host::Get().calls.push_back(std::move(call));
    return nResult;
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
        return log.level == level && log.source == source && log.line == line && log.text.starts_with(text);
    }));
}

int CountAsserts(const std::string& source, int line)
{
    return CountLogs(LogLevel::Abnormal, source, line, "ASSERT");
}

void SetLogRecording(bool bOn) { g_bRecord = bOn; }
long LiveBuffers() { return g_liveBuffers; }
long PoolBytes() { return g_poolBytes; }
void FailPoolAllocation(int n) { g_failPoolAllocation = n; }
void SetLastError(unsigned int nError) { t_lastError = nError; }

} // namespace fake_host

extern "C" {

int NET_COMM_RegistDevProtocolProcObject(unsigned int nType, CNetProtocolProc* pPrototype)
{
    auto& state = fake_host::Get();
    state.registeredType = nType;
    state.pCreated = pPrototype->CreateSelf();
    return state.registDevResult;
}

GUID NET_COMM_GetCurrentAppNodeID() { return fake_host::Get().appNodeID; }

int NET_SOCKET_RegisterNode(int hNetCommunication, CSocketDataObserver* pObserver, void* pContext, int a,
                            int b)
{
    return RecordCall({"RegisterNode", hNetCommunication, pObserver, pContext, a, b},
                      fake_host::Get().registerNodeResult);
}

int NET_SOCKET_UnRegisterNode(int hNetCommunication)
{
    return RecordCall({"UnRegisterNode", hNetCommunication});
}

int NET_SOCKET_Start(int hNetCommunication)
{
    return RecordCall({"Start", hNetCommunication}, fake_host::Get().startResult);
}

int NET_SOCKET_Stop(int hNetCommunication) { return RecordCall({"Stop", hNetCommunication}); }

int NET_SOCKET_DestroyHNetCommunication(int hNetCommunication)
{
    return RecordCall({"DestroyHNetCommunication", hNetCommunication});
}

unsigned int GetLastError() { return t_lastError; }

char* MEM_POOL_New(const char* pData, unsigned long nLen)
try {
    if (PoolFails()) {
        return nullptr;
    }
    auto pBuffer = std::make_unique<PoolBuffer>();
    pBuffer->bytes.assign(pData, nLen);
    g_poolBytes += static_cast<long>(nLen);
    ++g_liveBuffers;
    return reinterpret_cast<char*>(pBuffer.release());
} catch (const std::bad_alloc&) { // a host's pool throws nothing
    return nullptr;
}

void MEM_POOL_AddRef(const char* hBuffer) { ++FromHandle(hBuffer).references; }

void MEM_POOL_Delete(const char* hBuffer)
{
    if (--FromHandle(hBuffer).references == 0) {
        delete &FromHandle(hBuffer);
        --g_liveBuffers;
    }
}

const char* MEM_POOL_GetData(const char* hBuffer) { return FromHandle(hBuffer).bytes.data(); }
unsigned long MEM_POOL_GetLen(const char* hBuffer) { return FromHandle(hBuffer).bytes.size(); }

bool MEM_POOL_Append(const char* hBuffer, const char* pData, unsigned long nLen)
try {
    if (PoolFails()) {
        return false;
    }
    FromHandle(hBuffer).bytes.append(pData, nLen);
    g_poolBytes += static_cast<long>(nLen);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

void MEM_POOL_TruncateFront(const char* hBuffer, unsigned long nLen)
{
    auto& bytes = FromHandle(hBuffer).bytes;
    bytes.erase(0, std::min<size_t>(nLen, bytes.size()));
}

void SHARESDK_NormalOutput(const char* szText, const char* szSource, int nLine)
{
    Record(fake_host::LogLevel::Normal, szText, szSource, nLine);
}

void SHARESDK_AbnormalOutput(const char* szText, const char* szSource, int nLine)
{
    Record(fake_host::LogLevel::Abnormal, szText, szSource, nLine);
}

void SHARESDK_DebugOutput(const char* szText, const char* szSource, int nLine)
{
    Record(fake_host::LogLevel::Debug, szText, szSource, nLine);
}

} // extern "C"
