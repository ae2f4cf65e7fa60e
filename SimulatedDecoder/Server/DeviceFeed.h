#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>

#include <asio/io_context.hpp>

#include "Mutex.h"

namespace simulated_decoder {

// The way from other threads to the decoder, all of which belongs to the thread of the context: they wait
// here for a change and have it looked at there. So nothing is done for a change that nobody waits for, and
// whoever is slow gets the newest state, not a queue of old ones.
class DeviceFeed {
public:
    using Clock = std::chrono::steady_clock;

    explicit DeviceFeed(asio::io_context& context) : m_context(context) {}

    // On the context's thread.
    void Changed();
    std::uint64_t Revision() const;

    // Waits for another revision than this one; false when there was none in that time.
    bool WaitForChange(std::uint64_t seen, std::chrono::milliseconds patience);
    // Runs it on the context's thread. False when it was not run, because all is coming to an end; it may
    // then still be held, so it should own what it uses.
    bool Run(std::function<void()> job);
    // Waits for that time, shorter when all is coming to an end.
    void Pause(std::chrono::milliseconds time);

    // On the context's thread: whoever waits goes on at once, and nobody waits any more.
    void Stop();
    bool IsStopped() const;

private:
    asio::io_context& m_context;
    mutable CMutex m_mutex;
    std::condition_variable_any m_news;
    std::uint64_t m_revision TVWALL_GUARDED_BY(m_mutex) = 1;
    bool m_stopped TVWALL_GUARDED_BY(m_mutex) = false;
};

} // namespace simulated_decoder
