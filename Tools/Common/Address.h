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

// "host:port" or "[address]:port" with a decimal port from lowestPort to 65535. An IPv6 address needs the
// brackets: without them its last group could be a port.
std::optional<Address> ParseAddress(std::string_view text, std::uint16_t lowestPort);

// What to say of a text that is none, after the name of what takes it: "takes HOST:PORT with ...".
std::string AddressRemedy(std::string_view text, std::uint16_t lowestPort);

// "host:port", with brackets around an IPv6 address.
std::string AddressText(const std::string& host, const std::string& port);

} // namespace tools
