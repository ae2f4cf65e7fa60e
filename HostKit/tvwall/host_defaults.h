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

char* MEM_POOL_New(const char* /*pData*/, unsigned long /*nLen*/) { std::abort(); }
void MEM_POOL_AddRef(const char* /*hBuffer*/) { std::abort(); }
void MEM_POOL_Delete(const char* /*hBuffer*/) { std::abort(); }
const char* MEM_POOL_GetData(const char* /*hBuffer*/) { std::abort(); }
unsigned long MEM_POOL_GetLen(const char* /*hBuffer*/) { std::abort(); }
bool MEM_POOL_Append(const char* /*hBuffer*/, const char* /*pData*/, unsigned long /*nLen*/) { std::abort(); }
void MEM_POOL_TruncateFront(const char* /*hBuffer*/, unsigned long /*nLen*/) { std::abort(); }
void MEM_POOL_TruncateBack(const char* /*hBuffer*/, unsigned long /*nLen*/) { std::abort(); }

void SHARESDK_NormalOutput(const char* /*szText*/, const char* /*szSource*/, int /*nLine*/) {}
void SHARESDK_AbnormalOutput(const char* szText, const char* szSource, int nLine)
{
    (void)std::fprintf(stderr, "%s (%s:%d)\n", szText, szSource, nLine); // these texts have no line ends
}
void SHARESDK_DebugOutput(const char* /*szText*/, const char* /*szSource*/, int /*nLine*/) {}

unsigned int GetLastError() { return 0; }
