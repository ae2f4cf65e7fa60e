#include "Tools/Common/Address.h"

#include "Tools/Common/Numbers.h"

namespace tools {

std::optional<Address> ParseAddress(std::string_view text, std::uint16_t lowestPort)
{
    const auto colon = text.rfind(':');
    if (colon == std::string_view::npos) {
        return std::nullopt;
    }
    const auto port = ParseDecimal<std::uint16_t>(text.substr(colon + 1));
    std::string_view host = text.substr(0, colon);
    if (host.size() > 2 && host.front() == '[' && host.back() == ']') {
        host = host.substr(1, host.size() - 2);
    }
    if (host.empty() || !port || *port < lowestPort) {
        return std::nullopt;
    }
    return Address{std::string(host), *port};
}

} // namespace tools
