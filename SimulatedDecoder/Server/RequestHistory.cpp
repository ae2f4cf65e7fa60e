#include "Server/RequestHistory.h"

#include <algorithm>

#include "Server/Secrets.h"

namespace simulated_decoder {

PastMessage::PastMessage(std::string_view message)
    : text(HideCredentials(message.substr(0, kKept))), length(message.size())
{
}

void RequestHistory::Add(PastRequest request)
{
    request.number = ++m_lastNumber;
    m_requests.push_front(std::move(request));
    if (m_requests.size() > kKept) {
        m_requests.pop_back();
    }
}

const PastRequest* RequestHistory::Find(std::uint64_t number) const
{
    const auto found = std::find_if(m_requests.begin(), m_requests.end(),
                                    [number](const PastRequest& past) { return past.number == number; });
    return found == m_requests.end() ? nullptr : &*found;
}

} // namespace simulated_decoder
