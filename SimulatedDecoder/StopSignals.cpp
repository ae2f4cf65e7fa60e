#include "StopSignals.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <system_error>

namespace simulated_decoder {

StopSignals::StopSignals(asio::io_context& context) : m_signals(m_own, SIGINT, SIGTERM), m_patience(m_own)
{
    m_signals.async_wait([this, &context](const std::error_code&, int) {
        context.stop();
        m_patience.expires_after(std::chrono::milliseconds(500));
        m_patience.async_wait([](const std::error_code&) { std::_Exit(EXIT_SUCCESS); });
    });
    m_thread = std::thread([this] { m_own.run(); });
}

StopSignals::~StopSignals()
{
    m_own.stop();
    m_thread.join();
}

} // namespace simulated_decoder
