#include "Commands/Records/FailureCodes.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "TvwallProtocol.h"

namespace standin_host {

namespace {

using namespace ORVA_NET_PROTOCOL;

constexpr SFailureCode s_codes[] = {
    {KEST_RESULT_DEVICE_ERROR, 0, "device error", "the decoder's own code says why, see its log or --trace"},
    {KEST_RESULT_TIMEOUT, 0, "no reply in time",
     "the decoder is connected but silent; it may yet have carried the command out, so read before you "
     "repeat"},
    {KEST_RESULT_NOT_READY, 0, "stopped or not logged in", "log in, or leave out --no-login"},
    {KEST_RESULT_LOGIN_DEVICE_103, 103, "unknown account", "check --user"},
    {KEST_RESULT_LOGIN_DEVICE_106, 106, "wrong password", "check --password-file or TVWALL_PASSWORD"},
    {KEST_RESULT_LOGIN_DEVICE_105, 105, "too many hosts, or the account is refused",
     "log other hosts out, or ask who keeps the decoder's accounts"},
};

constexpr SFailureCode s_unknown{0, 0, "failure", "this is no code of the plug-in; is it the right library?"};

} // namespace

const SFailureCode& FailureOf(uint32_t nCode)
{
    const auto* pCode = std::find_if(std::begin(s_codes), std::end(s_codes),
                                     [nCode](const SFailureCode& code) { return code.nCode == nCode; });
    return pCode == std::end(s_codes) ? s_unknown : *pCode;
}

std::string CodeText(uint32_t nCode)
{
    char szCode[11];
    (void)std::snprintf(szCode, sizeof szCode, "0x%08X", nCode);
    return szCode;
}

std::string FailureTable()
{
    std::string strTable;
    for (const SFailureCode& code : s_codes) {
        strTable += "  " + CodeText(code.nCode) + "  " + code.szMeaning;
        if (code.nDeviceCode != 0) {
            strTable += " (the decoder's " + std::to_string(code.nDeviceCode) + ')';
        }
        strTable += std::string("\n              ") + code.szHint + '\n';
    }
    return strTable;
}

} // namespace standin_host
