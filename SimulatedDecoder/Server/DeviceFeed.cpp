#include "Server/DeviceFeed.h"

#include <memory>
#include <utility>

#include <asio/post.hpp>

namespace simulated_decoder {

void DeviceFeed::Changed()
{
    {
        const TMutexGuard lock(m_mutex);
        ++m_revision;
    }
    m_news.notify_all();
}

std::uint64_t DeviceFeed::Revision() const
{
    const TMutexGuard lock(m_mutex);
    return m_revision;
}

bool DeviceFeed::WaitForChange(std::uint64_t seen, std::chrono::milliseconds patience)
{
    const auto deadline = Clock::now() + patience;
    const TMutexGuard lock(m_mutex);
    while (!m_stopped && m_revision == seen &&
           m_news.wait_until(m_mutex, deadline) == std::cv_status::no_timeout) {
    }
    return m_revision != seen;
}

bool DeviceFeed::Run(std::function<void()> job)
{
    const auto done = std::make_shared<bool>(false);
    asio::post(m_context, [this, done, work = std::move(job)] {
        work();
        {
            const TMutexGuard lock(m_mutex);
            *done = true;
        }
        m_news.notify_all();
    });
    const TMutexGuard lock(m_mutex);
    while (!m_stopped && !*done) {
        m_news.wait(m_mutex);
    }
    return *done;
}

void DeviceFeed::Pause(std::chrono::milliseconds time)
{
    const auto deadline = Clock::now() + time;
    const TMutexGuard lock(m_mutex);
    while (!m_stopped && m_news.wait_until(m_mutex, deadline) == std::cv_status::no_timeout) {
    }
}

void DeviceFeed::Stop()
{
    {
        const TMutexGuard lock(m_mutex);
        m_stopped = true;
    }
    m_news.notify_all();
}

bool DeviceFeed::IsStopped() const
{
    const TMutexGuard lock(m_mutex);
    return m_stopped;
}

} // namespace simulated_decoder
