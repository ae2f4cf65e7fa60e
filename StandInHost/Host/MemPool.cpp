#include "Host/MemPool.h"

#include <algorithm>
#include <new>

#include "Host/HostExport.h"
#include "Host/HostLog.h"
#include "HostFunctions.h"

namespace standin_host {

CMemPool& CMemPool::Instance()
{
    static CMemPool s_pool;
    return s_pool;
}

const char* CMemPool::New(std::string_view bytes)
{
    auto buffer = std::make_unique<SBuffer>();
    buffer->strBytes = bytes;
    const char* hBuffer = reinterpret_cast<const char*>(buffer.get());
    const TMutexGuard guard(m_lock);
    Reserve(sizeof(SBuffer) + bytes.size());
    m_buffers.emplace(hBuffer, std::move(buffer));
    return hBuffer;
}

void CMemPool::AddRef(const char* hBuffer)
{
    const TMutexGuard guard(m_lock);
    if (SBuffer* pBuffer = Find(hBuffer, "AddRef")) {
        ++pBuffer->nReferences;
    }
}

void CMemPool::Delete(const char* hBuffer)
{
    const TMutexGuard guard(m_lock);
    SBuffer* pBuffer = Find(hBuffer, "Delete");
    if (pBuffer != nullptr && --pBuffer->nReferences == 0) {
        m_nBytes -= sizeof(SBuffer) + pBuffer->strBytes.size();
        m_buffers.erase(hBuffer);
    }
}

std::string_view CMemPool::Bytes(const char* hBuffer)
{
    const TMutexGuard guard(m_lock);
    SBuffer* pBuffer = Find(hBuffer, "Bytes");
    return pBuffer == nullptr ? std::string_view() : pBuffer->strBytes;
}

bool CMemPool::Append(const char* hBuffer, std::string_view bytes)
{
    const TMutexGuard guard(m_lock);
    SBuffer* pBuffer = Find(hBuffer, "Append");
    if (pBuffer == nullptr) {
        return false;
    }
    Reserve(bytes.size());
    pBuffer->strBytes.append(bytes);
    return true;
}

void CMemPool::TruncateFront(const char* hBuffer, std::size_t nLen)
{
    const TMutexGuard guard(m_lock);
    if (SBuffer* pBuffer = Find(hBuffer, "TruncateFront")) {
        nLen = std::min(nLen, pBuffer->strBytes.size());
        pBuffer->strBytes.erase(0, nLen);
        m_nBytes -= nLen;
    }
}

void CMemPool::TruncateBack(const char* hBuffer, std::size_t nLen)
{
    const TMutexGuard guard(m_lock);
    if (SBuffer* pBuffer = Find(hBuffer, "TruncateBack")) {
        nLen = std::min(nLen, pBuffer->strBytes.size());
        pBuffer->strBytes.resize(pBuffer->strBytes.size() - nLen);
        m_nBytes -= nLen;
    }
}

std::size_t CMemPool::LiveBuffers() const
{
    const TMutexGuard guard(m_lock);
    return m_buffers.size();
}

std::size_t CMemPool::WrongHandles() const
{
    const TMutexGuard guard(m_lock);
    return m_nWrongHandles;
}

void CMemPool::Reserve(std::size_t nBytes)
{
    if (nBytes > kMaxBytes - m_nBytes) {
        Log(ELogLevel::Error, "memory pool: more than 128 MiB are not given");
        throw std::bad_alloc();
    }
    m_nBytes += nBytes;
}

CMemPool::SBuffer* CMemPool::Find(const char* hBuffer, const char* szOperation)
{
    const auto it = m_buffers.find(hBuffer);
    if (it != m_buffers.end()) {
        return it->second.get();
    }
    ++m_nWrongHandles;
    Log(ELogLevel::Error, std::string("memory pool: ") + szOperation + " on a handle that is not alive");
    return nullptr;
}

} // namespace standin_host

using standin_host::CMemPool;

extern "C" {

HOST_EXPORT char* MEM_POOL_New(const char* pData, unsigned long nLen)
{
    try {
        return const_cast<char*>(CMemPool::Instance().New({pData, nLen}));
    } catch (const std::exception&) {
        return nullptr;
    }
}

HOST_EXPORT void MEM_POOL_AddRef(const char* hBuffer) { CMemPool::Instance().AddRef(hBuffer); }

HOST_EXPORT void MEM_POOL_Delete(const char* hBuffer) { CMemPool::Instance().Delete(hBuffer); }

HOST_EXPORT const char* MEM_POOL_GetData(const char* hBuffer)
{
    return CMemPool::Instance().Bytes(hBuffer).data();
}

HOST_EXPORT unsigned long MEM_POOL_GetLen(const char* hBuffer)
{
    return CMemPool::Instance().Bytes(hBuffer).size();
}

HOST_EXPORT bool MEM_POOL_Append(const char* hBuffer, const char* pData, unsigned long nLen)
{
    try {
        return CMemPool::Instance().Append(hBuffer, {pData, nLen});
    } catch (const std::exception&) {
        return false;
    }
}

HOST_EXPORT void MEM_POOL_TruncateFront(const char* hBuffer, unsigned long nLen)
{
    CMemPool::Instance().TruncateFront(hBuffer, nLen);
}

HOST_EXPORT void MEM_POOL_TruncateBack(const char* hBuffer, unsigned long nLen)
{
    CMemPool::Instance().TruncateBack(hBuffer, nLen);
}

} // extern "C"
