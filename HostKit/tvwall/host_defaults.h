#pragma once
// Definitions of the host's functions that a small host need not write. To be included in one source file of
// the program, which then has no others of them.
//
// - The memory pool, in which the plug-in keeps received bytes for hosts that do not: never called where
//   OnSocketRecvData gets a pNeedLen, as ReceiveBuffer gives it. Else the program is aborted.
// - The log: what is abnormal becomes a line on standard error, the rest is dropped.
// - GetLastError: a send that failed is final.

#include <cstdio>
#include <cstdlib>

#include "HostFunctions.h"

char* MEM_POOL_New(const char*, unsigned long) { std::abort(); }
void MEM_POOL_AddRef(const char*) { std::abort(); }
void MEM_POOL_Delete(const char*) { std::abort(); }
const char* MEM_POOL_GetData(const char*) { std::abort(); }
unsigned long MEM_POOL_GetLen(const char*) { std::abort(); }
bool MEM_POOL_Append(const char*, const char*, unsigned long) { std::abort(); }
void MEM_POOL_TruncateFront(const char*, unsigned long) { std::abort(); }
void MEM_POOL_TruncateBack(const char*, unsigned long) { std::abort(); }

void SHARESDK_NormalOutput(const char*, const char*, int) {}
void SHARESDK_AbnormalOutput(const char* text, const char* source, int line)
{
    (void)std::fprintf(stderr, "%s (%s:%d)\n", text, source, line); // these texts have no line ends
}
void SHARESDK_DebugOutput(const char*, const char*, int) {}

unsigned int GetLastError() { return 0; }
