#pragma once

// Receives the bytes of one connection. One receive thread of the host at a time calls it.
class CSocketDataObserver {
public:
    virtual ~CSocketDataObserver() = default;

    // nSocket is the host's own and not looked at; pContext is the one of NET_SOCKET_RegisterNode. pData
    // holds nLen received bytes, at least one; with a null pNeedLen it may be a memory-pool handle instead,
    // nLen is MEM_POOL_HANDLE_LEN then. Returns how many bytes were consumed: with a non-null pNeedLen the
    // host keeps the rest, calls again with it in front of further bytes, and *pNeedLen tells how many more
    // bytes the next frame needs at least; with a null pNeedLen the observer keeps everything itself. The
    // host sets *pNeedLen to 0 before the call. A processor that is stopped does not write it and returns 0,
    // one whose node drops what it receives (IsDropRecvData) sets and returns 0: there the host throws the
    // bytes away.
    virtual unsigned int OnSocketRecvData(int nSocket, const char* pData, unsigned int nLen,
                                          unsigned int* pNeedLen, void* pContext) = 0;
};
