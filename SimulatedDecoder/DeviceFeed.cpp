#include "DeviceFeed.h"

#include <memory>
#include <utility>

#include <asio/post.hpp>

namespace simulated_decoder {

void DeviceFeed::Changed()
{
    {
        const std::lock_guard lock(m_mutex);
        ++m_revision;
    }
    m_news.notify_all();
}

std::uint64_t DeviceFeed::Revision() const
{
    const std::lock_guard lock(m_mutex);
    return m_revision;
}

bool DeviceFeed::WaitForChange(std::uint64_t seen, std::chrono::milliseconds patience)
{
    std::unique_lock lock(m_mutex);
    m_news.wait_for(lock, patience, [&] { return m_stopped || m_revision != seen; });
    return m_revision != seen;
}

bool DeviceFeed::Run(std::function<void()> job)
{
    const auto done = std::make_shared<bool>(false);
    asio::post(m_context, [this, done, work = std::move(job)] {
        work();
        {
            const std::lock_guard lock(m_mutex);
            *done = true;
        }
        m_news.notify_all();
    });
    std::unique_lock lock(m_mutex);
    m_news.wait(lock, [&] { return m_stopped || *done; });
    return *done;
}

void DeviceFeed::Pause(std::chrono::milliseconds time)
{
    std::unique_lock lock(m_mutex);
    m_news.wait_for(lock, time, [&] { return m_stopped; });
}

void DeviceFeed::Stop()
{
    {
        const std::lock_guard lock(m_mutex);
        m_stopped = true;
    }
    m_news.notify_all();
}

bool DeviceFeed::IsStopped() const
{
    const std::lock_guard lock(m_mutex);
    return m_stopped;
}

} // namespace simulated_decoder
