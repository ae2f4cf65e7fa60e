#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <utility>

#include "Link/ErrorCode.h"

namespace simulated_decoder {

// A request and what became of it.
struct PastRequest {
    std::chrono::system_clock::time_point time;
    int connection = 0;
    std::string url; // printable ASCII
    std::optional<std::uint32_t> seq;
    std::optional<ErrorCode> answered; // the code that was sent
    const char* words = "";            // the outcome in words
};

// The latest requests of all hosts, newest first.
class RequestHistory {
public:
    void Add(PastRequest request)
    {
        m_requests.push_front(std::move(request));
        if (m_requests.size() > kKept) {
            m_requests.pop_back();
        }
    }
    const std::deque<PastRequest>& All() const { return m_requests; }

private:
    static constexpr std::size_t kKept = 50;

    std::deque<PastRequest> m_requests;
};

} // namespace simulated_decoder
