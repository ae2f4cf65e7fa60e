#include "Host/MemPool.h"

#include <algorithm>
#include <new>

#include "Host/HostExport.h"
#include "Host/HostLog.h"
#include "HostFunctions.h"

namespace standin_host {

MemPool& MemPool::Instance()
{
    static MemPool pool;
    return pool;
}

const char* MemPool::New(std::string_view bytes)
{
    auto buffer = std::make_unique<Buffer>();
    buffer->content = bytes;
    const char* handle = reinterpret_cast<const char*>(buffer.get());
    const TMutexGuard guard(m_lock);
    Reserve(sizeof(Buffer) + bytes.size());
    m_buffers.emplace(handle, std::move(buffer));
    return handle;
}

void MemPool::AddRef(const char* handle)
{
    const TMutexGuard guard(m_lock);
    if (Buffer* buffer = Find(handle, "AddRef")) {
        ++buffer->references;
    }
}

void MemPool::Delete(const char* handle)
{
    const TMutexGuard guard(m_lock);
    Buffer* buffer = Find(handle, "Delete");
    if (buffer != nullptr && --buffer->references == 0) {
        m_bytes -= sizeof(Buffer) + buffer->content.size();
        m_buffers.erase(handle);
    }
}

std::string_view MemPool::Bytes(const char* handle)
{
    const TMutexGuard guard(m_lock);
    Buffer* buffer = Find(handle, "Bytes");
    return buffer == nullptr ? std::string_view() : buffer->content;
}

bool MemPool::Append(const char* handle, std::string_view bytes)
{
    const TMutexGuard guard(m_lock);
    Buffer* buffer = Find(handle, "Append");
    if (buffer == nullptr) {
        return false;
    }
    Reserve(bytes.size());
    buffer->content.append(bytes);
    return true;
}

void MemPool::TruncateFront(const char* handle, std::size_t len)
{
    const TMutexGuard guard(m_lock);
    if (Buffer* buffer = Find(handle, "TruncateFront")) {
        len = std::min(len, buffer->content.size());
        buffer->content.erase(0, len);
        m_bytes -= len;
    }
}

void MemPool::TruncateBack(const char* handle, std::size_t len)
{
    const TMutexGuard guard(m_lock);
    if (Buffer* buffer = Find(handle, "TruncateBack")) {
        len = std::min(len, buffer->content.size());
        buffer->content.resize(buffer->content.size() - len);
        m_bytes -= len;
    }
}

std::size_t MemPool::LiveBuffers() const
{
    const TMutexGuard guard(m_lock);
    return m_buffers.size();
}

std::size_t MemPool::WrongHandles() const
{
    const TMutexGuard guard(m_lock);
    return m_wrongHandles;
}

void MemPool::Reserve(std::size_t bytes)
{
    if (bytes > kMaxBytes - m_bytes) {
        Log(LogLevel::Error, "memory pool: more than 128 MiB are not given");
        throw std::bad_alloc();
    }
    m_bytes += bytes;
}

MemPool::Buffer* MemPool::Find(const char* handle, const char* operation)
{
    const auto it = m_buffers.find(handle);
    if (it != m_buffers.end()) {
        return it->second.get();
    }
    ++m_wrongHandles;
    Log(LogLevel::Error, std::string("memory pool: ") + operation + " on a handle that is not alive");
    return nullptr;
}

} // namespace standin_host

using standin_host::MemPool;

extern "C" {

HOST_EXPORT char* MEM_POOL_New(const char* data, unsigned long len)
{
    try {
        return const_cast<char*>(MemPool::Instance().New({data, len}));
    } catch (const std::exception&) {
        return nullptr;
    }
}

HOST_EXPORT void MEM_POOL_AddRef(const char* handle) { MemPool::Instance().AddRef(handle); }

HOST_EXPORT void MEM_POOL_Delete(const char* handle) { MemPool::Instance().Delete(handle); }

HOST_EXPORT const char* MEM_POOL_GetData(const char* handle)
{
    return MemPool::Instance().Bytes(handle).data();
}

HOST_EXPORT unsigned long MEM_POOL_GetLen(const char* handle)
{
    return MemPool::Instance().Bytes(handle).size();
}

HOST_EXPORT bool MEM_POOL_Append(const char* handle, const char* data, unsigned long len)
{
    try {
        return MemPool::Instance().Append(handle, {data, len});
    } catch (const std::exception&) {
        return false;
    }
}

HOST_EXPORT void MEM_POOL_TruncateFront(const char* handle, unsigned long len)
{
    MemPool::Instance().TruncateFront(handle, len);
}

HOST_EXPORT void MEM_POOL_TruncateBack(const char* handle, unsigned long len)
{
    MemPool::Instance().TruncateBack(handle, len);
}

} // extern "C"
