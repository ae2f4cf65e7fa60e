#include "Commands/Records/FailureCodes.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "TvwallProtocol.h"

namespace standin_host {

namespace {

using namespace ORVA_NET_PROTOCOL;

constexpr uint32_t kWrongSession = 51; // in the reply to a login

constexpr FailureCode kCodes[] = {
    {KEST_RESULT_DEVICE_ERROR, kWrongSession, "device error",
     "the decoder's code says why; --device-codes gives its maker's words for it"},
    {KEST_RESULT_TIMEOUT, 0, "timeout",
     "the decoder is connected but silent; it may yet have carried the command out, so read before you "
     "repeat"},
    {KEST_RESULT_NOT_READY, 0, "stopped or not logged in", "log in, or leave out --no-login"},
    {KEST_RESULT_LOGIN_DEVICE_103, 103, "unknown account", "check --user"},
    {KEST_RESULT_LOGIN_DEVICE_106, 106, "wrong password", "check --password-file or TVWALL_PASSWORD"},
    {KEST_RESULT_LOGIN_DEVICE_105, 105, "too many hosts, or the account is refused",
     "log other hosts out, or ask who keeps the decoder's accounts"},
};

constexpr FailureCode kUnknown{0, 0, "failure", "this is no code of the plug-in; is it the right library?"};

} // namespace

const FailureCode& FailureOf(uint32_t hostCode)
{
    const auto* found =
        std::find_if(std::begin(kCodes), std::end(kCodes),
                     [hostCode](const FailureCode& code) { return code.hostCode == hostCode; });
    return found == std::end(kCodes) ? kUnknown : *found;
}

const char* LoginMeaning(uint32_t deviceCode)
{
    const auto* found =
        std::find_if(std::begin(kCodes), std::end(kCodes), [deviceCode](const FailureCode& code) {
            return deviceCode != 0 && code.deviceCode == deviceCode;
        });
    return found == std::end(kCodes) ? nullptr : found->meaning;
}

std::string CodeText(uint32_t hostCode)
{
    char digits[11];
    (void)std::snprintf(digits, sizeof digits, "0x%08X", hostCode);
    return digits;
}

std::string FailureTable()
{
    std::string table;
    for (const FailureCode& code : kCodes) {
        table += "  " + CodeText(code.hostCode) + "  " + code.meaning;
        if (code.deviceCode != 0) {
            table += " (at a login, the decoder's " + std::to_string(code.deviceCode) + ')';
        }
        table += std::string("\n              ") + code.hint + '\n';
    }
    return table;
}

} // namespace standin_host
