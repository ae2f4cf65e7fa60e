#pragma once

// Receives the bytes of one connection. One receive thread of the host at a time calls it.
class CSocketDataObserver {
public:
    virtual ~CSocketDataObserver() = default;

    // nSocket is the host's own and ignored; pContext is the one passed to NET_SOCKET_RegisterNode. pData
    // holds nLen received bytes, at least one; with a null pNeedLen it may be a memory-pool handle instead,
    // with nLen MEM_POOL_HANDLE_LEN. Returns the number of bytes consumed: with a non-null pNeedLen the host
    // keeps the rest, calls again with it in front of further bytes, and *pNeedLen receives the least number
    // of further bytes that the next frame needs; with a null pNeedLen the observer keeps everything itself.
    // The host sets *pNeedLen to 0 before the call. A stopped processor returns 0 without writing it; one
    // whose node drops received data (IsDropRecvData) sets it to 0 and returns 0, and the host discards the
    // bytes.
    virtual unsigned int OnSocketRecvData(int nSocket, const char* pData, unsigned int nLen,
                                          unsigned int* pNeedLen, void* pContext) = 0;
};
