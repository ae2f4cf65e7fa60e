#pragma once

// Receives the bytes of one connection. One receive thread of the host at a time calls it.
class CSocketDataObserver {
public:
    virtual ~CSocketDataObserver() = default;

    // nSocket and pContext are the host's. pData holds nLen received bytes; with a null pNeedLen it may be a
    // memory-pool handle instead, nLen is MEM_POOL_HANDLE_LEN then. Returns how many bytes were consumed:
    // with a non-null pNeedLen the host keeps the rest, calls again with it in front of further bytes, and
    // *pNeedLen tells how many more bytes the next frame needs at least; with a null pNeedLen the observer
    // keeps everything itself.
    virtual unsigned int OnSocketRecvData(int nSocket, const char* pData, unsigned int nLen,
                                          unsigned int* pNeedLen, void* pContext) = 0;
};
