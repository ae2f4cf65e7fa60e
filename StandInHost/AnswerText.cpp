#include "AnswerText.h"

#include <cstdio>
#include <cstring>

#include "Text.h"
#include "TvwallProtocol.h"

namespace standin_host {

namespace {

using namespace ORVA_NET_PROTOCOL;

std::string FailureText(uint32_t nCode)
{
    switch (nCode) {
    case KEST_RESULT_DEVICE_ERROR:
        return "device error";
    case KEST_RESULT_TIMEOUT:
        return "no reply in time";
    case KEST_RESULT_NOT_READY:
        return "stopped or not logged in";
    case KEST_RESULT_LOGIN_DEVICE_103:
        return "unknown account";
    case KEST_RESULT_LOGIN_DEVICE_106:
        return "wrong password";
    case KEST_RESULT_LOGIN_DEVICE_105:
        return "account locked or refused";
    default:
        return "failure";
    }
}

std::string CodeText(uint32_t nCode)
{
    char szCode[11];
    (void)std::snprintf(szCode, sizeof szCode, "0x%08X", nCode);
    return szCode;
}

std::string LoginText(const std::vector<uint8_t>& bytes)
{
    _net_login_success_info info;
    if (bytes.size() != sizeof info) {
        return "logged in, with an answer of " + std::to_string(bytes.size()) + " bytes";
    }
    std::memcpy(&info, bytes.data(), sizeof info);
    GUID nodeID;
    std::memcpy(&nodeID, &info.remoteNodeID, sizeof nodeID);
    return "logged in, answered by node " + GuidText(nodeID) + ", type " +
           std::to_string(info.remoteNodeType);
}

} // namespace

std::string DescribeAnswer(const SConsoleCommand& command, const SAnswer& answer)
{
    if (answer.kind == SAnswer::EKind::Failure) {
        return FailureText(answer.nCode) + " (" + CodeText(answer.nCode) + ")";
    }
    if (command.nCmdID == KEST_CMD_REQUEST_LOGIN) {
        return LoginText(answer.bytes);
    }
    if (command.strTitle.starts_with("raw")) {
        return "answered with " + std::to_string(answer.bytes.size()) + " bytes " +
               HexText(answer.bytes.data(), answer.bytes.size());
    }
    return "done";
}

} // namespace standin_host
