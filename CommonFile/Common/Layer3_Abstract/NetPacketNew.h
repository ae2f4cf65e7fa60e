#pragma once

#include <atomic>
#include <cstdint>
#include <list>

// A queue of received bytes, built from the host's memory-pool buffers. Used by one thread at a time.
//
// Wherever data comes with a length, the length 0xFFFFFFFF marks the pointer as a pool handle, which knows
// its own length; the queue then holds its own reference to it. Null data counts as no bytes.
class CNetPacketNew {
public:
    CNetPacketNew();
    ~CNetPacketNew();
    CNetPacketNew(const CNetPacketNew&) = delete;
    CNetPacketNew& operator=(const CNetPacketNew&) = delete;

    // Adds bytes at the end. False, with nothing added, when there is no memory.
    bool SaveBuffer(const char* pData, unsigned long nLen);
    // Adds bytes at the front.
    bool SaveBufferFront(const char* pData, unsigned long nLen);

    bool HaveData(unsigned long nLen) const { return nLen <= m_NetPacketBufferSize; }

    // Copies the first nLen bytes without consuming them; false when fewer are held.
    bool GetPacketHead(char* pDst, unsigned long nLen) const;
    // A new pool buffer with the first nLen bytes (at least 1), which are not consumed. Null when fewer are
    // held or there is no memory. The caller releases it with ReleasePack.
    char* GetPacket(unsigned long nLen) const;
    void ReleasePack(const char* hPacket) const;

    // Drops bytes from the front; false, with a report and nothing dropped, when fewer are held.
    bool TruncateFront(unsigned long nLen);

private:
    using MemList = std::list<const char*>;

    bool Insert(MemList::const_iterator position, const char* pData, unsigned long nLen);
    // Hands the first nLen bytes to take(pData, nLen), buffer by buffer, until it returns false; true when
    // all were taken.
    template <class Take>
    bool TakeFront(unsigned long nLen, Take take) const;

    static std::atomic<uint32_t> m_dwPageSize; // of the platform; 0 until the first construction
    unsigned long m_NetPacketBufferSize = 0;   // bytes held
    MemList m_MemList;                         // pool handles, oldest first
};
