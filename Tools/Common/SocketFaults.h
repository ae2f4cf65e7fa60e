#pragma once

#include <string>
#include <system_error>

namespace tools {

// What went wrong on a socket or in a look-up of a host name, in words for a user.
std::string SocketFault(const std::error_code& error);

} // namespace tools
