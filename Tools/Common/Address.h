#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tools {

struct Address {
    std::string host; // without the brackets of "[address]:port"
    std::uint16_t port;
};

// "host:port" or "[address]:port" with a decimal port from lowestPort to 65535.
std::optional<Address> ParseAddress(std::string_view text, std::uint16_t lowestPort);

} // namespace tools
