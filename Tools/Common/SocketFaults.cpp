#include "Tools/Common/SocketFaults.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

namespace tools {

namespace {

constexpr std::pair<std::errc, const char*> kFaults[] = {
    {std::errc::connection_refused, "nothing listens there"},
    {std::errc::timed_out, "no answer in time"},
    {std::errc::host_unreachable, "no route to that host"},
    {std::errc::network_unreachable, "no route to that network"},
    {std::errc::connection_reset, "the other side reset the connection"},
    {std::errc::connection_aborted, "the connection was aborted"},
    {std::errc::broken_pipe, "the other side no longer receives"},
    {std::errc::address_in_use, "the address is in use"},
    {std::errc::address_not_available, "this machine has no such address"},
    {std::errc::permission_denied, "that is not permitted"},
    {std::errc::too_many_files_open, "too many files and connections are open"},
    {std::errc::too_many_files_open_in_system, "too many files and connections are open"},
};

// Those of name look-ups, whose errors have no code of the system.
bool IsOfNames(const std::error_code& error)
{
    const std::string_view category = error.category().name();
    return category == "asio.netdb" || category == "asio.addrinfo";
}

} // namespace

std::string SocketFault(const std::error_code& error)
{
    if (IsOfNames(error)) {
        return "no host of that name is known";
    }
    const auto* found = std::find_if(std::begin(kFaults), std::end(kFaults), [&error](const auto& fault) {
        // The library's category of system errors is not the standard one.
        return error.value() == static_cast<int>(fault.first);
    });
    return found != std::end(kFaults) ? found->second
                                      : "the network failed (error " + std::to_string(error.value()) + ")";
}

} // namespace tools
