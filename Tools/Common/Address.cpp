#include "Tools/Common/Address.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include "Tools/Common/Numbers.h"
#include "Tools/Common/TerminalText.h"

namespace tools {

namespace {

bool IsIpv6(std::string_view text)
{
    in6_addr address{};
    const std::string withoutZone(text.substr(0, text.find('%')));
    return ::inet_pton(AF_INET6, withoutZone.c_str(), &address) == 1;
}

struct Halves {
    std::string_view host;
    std::optional<std::uint16_t> port;
};

Halves Cut(std::string_view text)
{
    const auto colon = text.rfind(':');
    if (colon == std::string_view::npos) {
        return {text, std::nullopt};
    }
    return {text.substr(0, colon), ParseDecimal<std::uint16_t>(text.substr(colon + 1))};
}

} // namespace

std::optional<Address> ParseAddress(std::string_view text, std::uint16_t lowestPort)
{
    auto [host, port] = Cut(text);
    const bool brackets = host.size() > 2 && host.front() == '[' && host.back() == ']';
    if (brackets) {
        host = host.substr(1, host.size() - 2);
    }
    const bool usable = brackets ? IsIpv6(host) : host.find_first_of(":[]") == std::string_view::npos;
    if (host.empty() || !usable || !port || *port < lowestPort) {
        return std::nullopt;
    }
    return Address{std::string(host), *port};
}

std::string AddressRemedy(std::string_view text, std::uint16_t lowestPort)
{
    const auto [host, port] = Cut(text);
    const std::string given = ", not '" + OneLine(text) + "'";
    if (IsIpv6(host) && port) {
        return "takes an IPv6 address in brackets, " + AddressText(std::string(host), std::to_string(*port)) +
               given;
    }
    if (IsIpv6(text)) {
        return "takes an IPv6 address in brackets and a port, [" + std::string(text) + "]:PORT" + given;
    }
    return "takes HOST:PORT with a port from " + std::to_string(lowestPort) + " to 65535" + given;
}

std::string AddressText(const std::string& host, const std::string& port)
{
    const bool brackets = host.find(':') != std::string::npos;
    return (brackets ? '[' + host + ']' : host) + ':' + port;
}

} // namespace tools
