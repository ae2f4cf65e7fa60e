#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Host/Frames/FrameSplitter.h"
#include "Mutex.h"

namespace standin_host {

// The last request that went out for a command, and the reply to it.
struct Exchange {
    bool sent = false; // a request went out
    std::string url{}; // of the request
    std::optional<uint32_t>
        deviceCode{};                   // of the reply, 0 where it has none; nothing until the reply has come
    std::chrono::milliseconds waited{}; // since the request went out
};

// Watches the frames of one connection for the exchange of the command that runs: the plug-in's answer says
// that the decoder refused, only the reply says why. A reply is the first message with the request's sequence
// number that is no notification. Looks at the first kMostRead bytes of a message, far more than its header
// takes; a message whose header does not end there counts as none.
class ExchangeWatch {
public:
    // --- worker ---

    // A command begins, or has ended: what was sent before is none of the next one's.
    void Forget();

    // --- the thread that sends, and the one that receives ---

    void Sent(std::string_view bytes); // whole frames; one call at a time
    void Received(std::string_view bytes);

    // --- any thread ---

    Exchange Last() const;

    static constexpr std::size_t kMostRead = 256UL * 1024;

private:
    using Clock = std::chrono::steady_clock;

    bool Awaits() const;
    bool IsAwaiting() const TVWALL_REQUIRES(m_lock) { return m_last.sent && !m_last.deviceCode; }

    FrameSplitter m_out{kMostRead};
    FrameSplitter m_in{kMostRead};
    mutable CMutex m_lock;
    Exchange m_last TVWALL_GUARDED_BY(m_lock);
    uint32_t m_seq TVWALL_GUARDED_BY(m_lock) = 0; // of the request
    Clock::time_point m_sentAt TVWALL_GUARDED_BY(m_lock);
};

} // namespace standin_host
