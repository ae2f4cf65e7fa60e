#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "Mutex.h"

namespace standin_host {

// The process's pool of reference-counted byte buffers. Thread-safe. A handle that names no live buffer is
// reported and counted, and the operation does nothing, so that a faulty plug-in cannot corrupt the host. The
// pool never grows beyond kMaxBytes, so that a decoder that never ends a message cannot exhaust memory.
class MemPool {
public:
    static MemPool& Instance();

    static constexpr std::size_t kMaxBytes = 128UL * 1024 * 1024;

    const char* New(std::string_view bytes); // one reference; throws std::bad_alloc
    void AddRef(const char* handle);
    void Delete(const char* handle);
    // Valid until the buffer is changed or released.
    std::string_view Bytes(const char* handle);
    bool Append(const char* handle, std::string_view bytes); // throws std::bad_alloc
    void TruncateFront(const char* handle, std::size_t len);
    void TruncateBack(const char* handle, std::size_t len);

    std::size_t LiveBuffers() const;
    std::size_t WrongHandles() const; // operations on handles that named no live buffer, so far

private:
    struct Buffer {
        std::string content;
        unsigned long references = 1;
    };

    // Reserves room for bytes more; throws std::bad_alloc.
    void Reserve(std::size_t byteCount) TVWALL_REQUIRES(m_lock);
    Buffer* Find(const char* handle, const char* operation) TVWALL_REQUIRES(m_lock);

    mutable CMutex m_lock;
    // The key is the buffer's address.
    std::unordered_map<const char*, std::unique_ptr<Buffer>> m_buffers TVWALL_GUARDED_BY(m_lock);
    std::size_t m_bytes TVWALL_GUARDED_BY(m_lock) = 0; // in all buffers, overhead included
    std::size_t m_wrongHandles TVWALL_GUARDED_BY(m_lock) = 0;
};

} // namespace standin_host
