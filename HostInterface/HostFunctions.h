#pragma once
// Functions of the host process that the plug-in imports. They are resolved when the library is loaded. They
// are called from the receive thread, the worker and the threads that start and stop processors, and throw
// nothing.

#include "HostTypes.h"

class CNetProtocolProc;
class CSocketDataObserver;

// Length value that marks a data pointer as a memory-pool handle.
inline constexpr unsigned int MEM_POOL_HANDLE_LEN = 0xFFFFFFFF;

// Values of GetLastError after CNetNode::SendData has failed. Any other value is final.
enum NET_SOCKET_ERROR : unsigned int {
    NET_SOCKET_ERROR_NOBUFS = 0x20000009, // the send buffer is full and nothing was taken: try again
};

// The host exports them whatever its default visibility.
#pragma GCC visibility push(default)

extern "C" {

// --- registration ---

// Registers the prototype for a device type; the host uses it during the call only (CreateSelf). Returns the
// host's result, 0 for success.
int NET_COMM_RegistDevProtocolProcObject(unsigned int nType, CNetProtocolProc* pPrototype);
// The identifier of the host application's own node.
GUID NET_COMM_GetCurrentAppNodeID();

// --- sockets; hNetCommunication is the host's own name for a connection, as it was given to Initial ---

// The plug-in checks only the result of NET_SOCKET_RegisterNode, which Initial returns; 0 is success.

// Passes the bytes of the connection to the observer, each time with pContext; a and b are those of Initial.
int NET_SOCKET_RegisterNode(int hNetCommunication, CSocketDataObserver* pObserver, void* pContext, int a,
                            int b);
// After it has returned, the observer is not called any more. Called by Quit, after NET_SOCKET_Stop.
int NET_SOCKET_UnRegisterNode(int hNetCommunication);
// Starts receiving.
int NET_SOCKET_Start(int hNetCommunication);
// After it has returned, no receive is running: it waits for one that is. Called by Stop, even on a
// connection that is already lost.
int NET_SOCKET_Stop(int hNetCommunication);
// Closes the connection, if it is still open, and frees its handle. Called by Quit.
int NET_SOCKET_DestroyHNetCommunication(int hNetCommunication);
// Why the calling thread's last SendData failed.
unsigned int GetLastError();

// --- memory pool: reference-counted byte buffers, named by an opaque handle; thread-safe ---

// Never called while every OnSocketRecvData has a pNeedLen, but all except MEM_POOL_TruncateBack have to be
// there when the library is loaded. A buffer is used by one thread at a time, different ones by several.

// A new buffer with a copy of nLen bytes and one reference; null when there is no memory.
char* MEM_POOL_New(const char* pData, unsigned long nLen);
void MEM_POOL_AddRef(const char* hBuffer);
// Releases one reference; the last one frees the buffer.
void MEM_POOL_Delete(const char* hBuffer);
const char* MEM_POOL_GetData(const char* hBuffer);
unsigned long MEM_POOL_GetLen(const char* hBuffer);
// Appends bytes at the end; false, with the buffer unchanged, when there is no memory.
bool MEM_POOL_Append(const char* hBuffer, const char* pData, unsigned long nLen);
// Drop nLen bytes from one end of the buffer; all of them if nLen exceeds its length.
void MEM_POOL_TruncateFront(const char* hBuffer, unsigned long nLen);
void MEM_POOL_TruncateBack(const char* hBuffer, unsigned long nLen);

// --- log; texts are zero-terminated and copied during the call; nLine names the place in the source ---

// A text has a line end at its end or not. All are UTF-8 but those of DebugOutput, which show what the
// decoder sent, with any bytes and line ends.

void SHARESDK_NormalOutput(const char* szText, const char* szSource, int nLine);
void SHARESDK_AbnormalOutput(const char* szText, const char* szSource, int nLine);
void SHARESDK_DebugOutput(const char* szText, const char* szSource, int nLine);

} // extern "C"

#pragma GCC visibility pop
