#pragma once

#include <thread>

#include <asio/io_context.hpp>
#include <asio/signal_set.hpp>
#include <asio/steady_timer.hpp>

namespace simulated_decoder {

// Stops the context at SIGINT or SIGTERM, from a thread of its own: the context's may be busy with a long
// request or blocked on a pipe that nobody reads. If this object still exists half a second later, the
// process ends at once, with status 0.
class StopSignals {
public:
    explicit StopSignals(asio::io_context& context);
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

private:
    asio::io_context m_own{1};
    asio::signal_set m_signals;
    asio::steady_timer m_patience;
    std::thread m_thread;
};

} // namespace simulated_decoder
