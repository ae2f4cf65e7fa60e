#pragma once
// Functions of the host process that the plug-in imports. They are resolved when the library is loaded.

#include "HostTypes.h"

class CNetProtocolProc;
class CSocketDataObserver;

// Length value that marks a data pointer as a memory-pool handle.
inline constexpr unsigned int MEM_POOL_HANDLE_LEN = 0xFFFFFFFF;

// Values of GetLastError after a failed socket operation.
enum NET_SOCKET_ERROR : unsigned int {
    NET_SOCKET_ERROR_NOBUFS = 0x20000009, // the send buffer is full for now: try again
};

// The host exports them, whatever visibility it compiles with.
#pragma GCC visibility push(default)

extern "C" {

// --- registration ---

// Registers the prototype for a device type; the host uses it during the call only (CreateSelf). Returns the
// host's result.
int NET_COMM_RegistDevProtocolProcObject(unsigned int nType, CNetProtocolProc* pPrototype);
// The identifier of the host application's own node.
GUID NET_COMM_GetCurrentAppNodeID();

// --- sockets; hNetCommunication names one connection of the host ---

// Makes the observer receive the bytes of the connection. pContext, a and b are handed through.
int NET_SOCKET_RegisterNode(int hNetCommunication, CSocketDataObserver* pObserver, void* pContext, int a,
                            int b);
// After it has returned, the observer is not called any more.
int NET_SOCKET_UnRegisterNode(int hNetCommunication);
int NET_SOCKET_Start(int hNetCommunication);
// After it has returned, no receive is running.
int NET_SOCKET_Stop(int hNetCommunication);
int NET_SOCKET_DestroyHNetCommunication(int hNetCommunication);
// Why the calling thread's last socket operation failed, a NET_SOCKET_ERROR_* value.
unsigned int GetLastError();

// --- memory pool: reference-counted byte buffers, named by an opaque handle; thread-safe ---

// A new buffer with a copy of nLen bytes and one reference; null when there is no memory.
char* MEM_POOL_New(const char* pData, unsigned long nLen);
void MEM_POOL_AddRef(const char* hBuffer);
// Gives back one reference; the last one frees the buffer.
void MEM_POOL_Delete(const char* hBuffer);
const char* MEM_POOL_GetData(const char* hBuffer);
unsigned long MEM_POOL_GetLen(const char* hBuffer);
// Appends bytes at the end; false when there is no memory, the buffer is unchanged then.
bool MEM_POOL_Append(const char* hBuffer, const char* pData, unsigned long nLen);
// Drop nLen bytes (at most all of them) from one end of the buffer.
void MEM_POOL_TruncateFront(const char* hBuffer, unsigned long nLen);
void MEM_POOL_TruncateBack(const char* hBuffer, unsigned long nLen);

// --- log; texts are zero-terminated UTF-8, copied during the call ---

void SHARESDK_NormalOutput(const char* szText, const char* szSource, int nLine);
void SHARESDK_AbnormalOutput(const char* szText, const char* szSource, int nLine);
void SHARESDK_DebugOutput(const char* szText, const char* szSource, int nLine);

} // extern "C"

#pragma GCC visibility pop
