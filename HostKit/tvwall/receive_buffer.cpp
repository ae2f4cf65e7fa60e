#include "tvwall/receive_buffer.h"

#include <algorithm>
#include <limits>
#include <new>

namespace tvwall {

bool ReceiveBuffer::Take(std::span<const char> bytes, CSocketDataObserver& observer, void* context)
{
    constexpr int kAnySocket = 0; // the observer ignores it
    constexpr std::size_t kMostAtOnce = std::numeric_limits<unsigned int>::max();

    try {
        m_kept.append(bytes.data(), bytes.size());
    } catch (const std::bad_alloc&) {
        return false;
    }
    if (m_kept.size() >= m_wanted) {
        unsigned int needed = 0;
        const unsigned int consumed = observer.OnSocketRecvData(
            kAnySocket, m_kept.data(), static_cast<unsigned int>(std::min(m_kept.size(), kMostAtOnce)),
            &needed, context);
        m_kept.erase(0, needed == 0 ? m_kept.size() : consumed);
        m_wanted = m_kept.size() + std::max(needed, 1U);
    }
    return m_kept.size() <= m_mostKept;
}

} // namespace tvwall
