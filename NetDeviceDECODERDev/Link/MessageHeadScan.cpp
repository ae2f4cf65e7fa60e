#include "Link/MessageHeadScan.h"

#include <climits>
#include <cstdint>
#include <exception>
#include <random>

namespace {

// Without randomness a peer can predict the time of a scan, not change its result.
uint64_t MakeKey() noexcept
{
    constexpr uint64_t FALLBACK = 0x0123456789ABCDEF;
    try {
        std::random_device device;
        return uint64_t{device()} << 32U | device();
    } catch (const std::exception&) {
        return FALLBACK;
    }
}

const uint64_t NAME_KEY = MakeKey();

} // namespace

SMessageHead ReadMessageHead(std::string_view message)
{
    if (message.size() > INT_MAX) {
        return {};
    }
    const CMessageText text(message);
    return CMessageHeadScan<const CMessageText>(text, NAME_KEY).Run();
}
