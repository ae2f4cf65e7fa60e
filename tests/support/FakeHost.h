#pragma once
// The host functions that the plug-in imports, as recorded fakes for tests, benchmarks and fuzz targets.

#include <functional>
#include <string>
#include <vector>

#include "HostTypes.h"

class CNetProtocolProc;
class CSocketDataObserver;

namespace fake_host {

enum class LogLevel { Normal, Abnormal, Debug };

struct LogLine {
    LogLevel level;
    std::string text;
    std::string source;
    int line;
};

// One call of a NET_* function.
struct Call {
    std::string name;
    int netCommunication = 0;
    CSocketDataObserver* observer = nullptr;
    void* context = nullptr;
    int a = 0;
    int b = 0;
};

// What the fakes answer and what they saw. Reset puts the initial values back.
struct State {
    GUID appNodeID{0xA1B2C3D4, 0x1122, 0x3344, {1, 2, 3, 4, 5, 6, 7, 8}};
    int registerNodeResult = 0;
    int startResult = 0;
    int registDevResult = 0;
    unsigned int registeredType = 0;
    CNetProtocolProc* created = nullptr; // CreateSelf of the registered prototype; the test owns it
    std::vector<Call> calls;
    std::function<void(const Call&)> onCall = [](const Call&) {};
};
State& Get();

// Forgets logs and calls and restores State. Live pool buffers stay counted.
void Reset();

std::vector<LogLine> Logs();
// How many lines of this level have this source and line number, and this text unless it is empty.
int CountLogs(LogLevel level, const std::string& source, int line, const std::string& text = "");
// The source that the session's and the login's reports name.
inline constexpr char kProtocolSource[] = "NetProtocolProcTWDECODERDevImp";
// "ASSERT" reports of this source and line number.
int CountAsserts(const std::string& source, int line);
// Off in benchmarks, fuzz targets and stress tests.
void SetLogRecording(bool on);

// Memory-pool buffers that are alive now.
long LiveBuffers();
// Bytes that went into them so far.
long PoolBytes();
// The n-th allocation of the memory pool from now on fails, once (1 = the next); 0 switches the fault off.
void FailPoolAllocation(int n);

// What GetLastError answers on the calling thread.
void SetLastError(unsigned int error);

} // namespace fake_host
