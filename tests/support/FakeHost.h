#pragma once
// The host functions that the plug-in imports, as recorded fakes for tests, benchmarks and fuzz targets.

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

// One call of a NET_* function, in the order of arrival.
struct Call {
    std::string name;
    int hNetCommunication = 0;
    CSocketDataObserver* pObserver = nullptr;
    void* pContext = nullptr;
    int a = 0;
    int b = 0;
};

// Forgets logs and calls, restores the results and the fault settings below. Live buffers stay counted.
void Reset();

std::vector<LogLine> Logs();
// How many log lines have this source and line (an empty source matches any).
int CountLogs(LogLevel level, const std::string& source, int line);
// "ASSERT" reports of this source and line.
int CountAsserts(const std::string& source, int line);
void SetLogRecording(bool bOn); // off in benchmarks, fuzz targets and stress tests

std::vector<Call> Calls();

// Memory-pool buffers that are alive now.
long LiveBuffers();
// The n-th MEM_POOL_New from now on fails (1 = the next), once; 0 switches the fault off.
void FailPoolAllocation(int n);

extern GUID appNodeID;                // answer of NET_COMM_GetCurrentAppNodeID
extern int registerNodeResult;        // answer of NET_SOCKET_RegisterNode
extern int startResult;               // answer of NET_SOCKET_Start
extern int registDevResult;           // answer of NET_COMM_RegistDevProtocolProcObject
extern unsigned int registeredType;   // its last argument
extern CNetProtocolProc* (*onRegister)(CNetProtocolProc* pPrototype); // called during the registration
extern CNetProtocolProc* createdByRegister;
extern thread_local unsigned int lastError; // answer of GetLastError

} // namespace fake_host
