#include "NetPacketNew.h"

#include <algorithm>
#include <new>
#include <unistd.h>

#include "HostFunctions.h"

std::atomic<uint32_t> CNetPacketNew::m_dwPageSize{0};

namespace {

// A reference to a pool buffer with the data, null when there is no memory; nLen becomes its true length.
const char* HoldBuffer(const char* pData, unsigned long& nLen)
{
    if (nLen != MEM_POOL_HANDLE_LEN) {
        return MEM_POOL_New(pData, nLen);
    }
    MEM_POOL_AddRef(pData);
    nLen = MEM_POOL_GetLen(pData);
    return pData;
}

} // namespace

CNetPacketNew::CNetPacketNew()
{
    if (m_dwPageSize == 0) {
        m_dwPageSize = static_cast<uint32_t>(sysconf(_SC_PAGESIZE));
    }
}

CNetPacketNew::~CNetPacketNew()
{
    for (const char* hBuffer : m_MemList) {
        MEM_POOL_Delete(hBuffer);
    }
}

bool CNetPacketNew::SaveBuffer(const char* pData, unsigned long nLen)
{
    return Insert(m_MemList.cend(), pData, nLen);
}

bool CNetPacketNew::SaveBufferFront(const char* pData, unsigned long nLen)
{
    return Insert(m_MemList.cbegin(), pData, nLen);
}

bool CNetPacketNew::Insert(MemList::const_iterator position, const char* pData, unsigned long nLen)
{
    if (pData == nullptr || nLen == 0) {
        return true;
    }
    MemList node; // allocated first, so that no buffer is lost when there is no memory for it
    try {
        node.push_back(nullptr);
    } catch (const std::bad_alloc&) {
        return false;
    }
    node.front() = HoldBuffer(pData, nLen);
    if (node.front() == nullptr) {
        return false;
    }
    m_MemList.splice(position, node);
    m_NetPacketBufferSize += nLen;
    return true;
}

// Asks the buffers for their lengths every time: the host may have cut one whose handle it kept.
template <class Take>
bool CNetPacketNew::TakeFront(unsigned long nLen, Take take) const
{
    if (!HaveData(nLen)) {
        return false;
    }
    for (auto it = m_MemList.begin(); nLen > 0 && it != m_MemList.end(); ++it) {
        const unsigned long nChunk = std::min(nLen, MEM_POOL_GetLen(*it));
        if (!take(MEM_POOL_GetData(*it), nChunk)) {
            return false;
        }
        nLen -= nChunk;
    }
    return nLen == 0;
}

bool CNetPacketNew::GetPacketHead(char* pDst, unsigned long nLen) const
{
    unsigned long nCopied = 0;
    return TakeFront(nLen, [pDst, &nCopied](const char* pData, unsigned long nChunk) {
        std::copy_n(pData, nChunk, pDst + nCopied);
        nCopied += nChunk;
        return true;
    });
}

char* CNetPacketNew::GetPacket(unsigned long nLen) const
{
    char* hPacket = nullptr;
    const bool bWhole = TakeFront(nLen, [&hPacket](const char* pData, unsigned long nChunk) {
        if (hPacket != nullptr) {
            return MEM_POOL_Append(hPacket, pData, nChunk);
        }
        hPacket = MEM_POOL_New(pData, nChunk);
        return hPacket != nullptr;
    });
    if (!bWhole) {
        ReleasePack(hPacket);
        return nullptr;
    }
    return nLen == 0 ? MEM_POOL_New("", 0) : hPacket;
}

void CNetPacketNew::ReleasePack(const char* hPacket) const
{
    if (hPacket != nullptr) {
        MEM_POOL_Delete(hPacket);
    }
}

bool CNetPacketNew::TruncateFront(unsigned long nLen)
{
    if (!HaveData(nLen)) {
        SHARESDK_AbnormalOutput("ASSERT", "NetPacketNew", 158);
        return false;
    }
    m_NetPacketBufferSize -= nLen;
    while (nLen > 0 && !m_MemList.empty()) {
        const char* hFront = m_MemList.front();
        const unsigned long nHeld = MEM_POOL_GetLen(hFront);
        if (nHeld > nLen) {
            MEM_POOL_TruncateFront(hFront, nLen);
            return true;
        }
        MEM_POOL_Delete(hFront);
        m_MemList.pop_front();
        nLen -= nHeld;
    }
    return true;
}
