#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "Link/ErrorCode.h"

namespace simulated_decoder {

// The beginning of a message, as it came or went, without credentials.
struct PastMessage {
    static constexpr std::size_t kKept = 16384; // bytes

    explicit PastMessage(std::string_view message);

    std::string text;
    std::size_t length; // of the whole message, in bytes
};

// A request and what became of it.
struct PastRequest {
    std::chrono::system_clock::time_point time;
    int connection = 0;
    std::string url; // printable ASCII
    std::optional<std::uint32_t> seq;
    std::optional<ErrorCode> answered; // the code that was sent
    const char* words = "";            // the outcome in words
    PastMessage request;
    std::optional<PastMessage> reply; // nothing: none was sent
    std::uint64_t number = 0;         // counts all requests of all hosts, from 1; given by the history
};

// The latest requests of all hosts, newest first.
class RequestHistory {
public:
    void Add(PastRequest request);
    const std::deque<PastRequest>& All() const { return m_requests; }
    // Null when it is not kept, or not yet.
    const PastRequest* Find(std::uint64_t number) const;

private:
    static constexpr std::size_t kKept = 50;

    std::deque<PastRequest> m_requests;
    std::uint64_t m_lastNumber = 0;
};

} // namespace simulated_decoder
