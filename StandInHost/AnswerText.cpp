#include "AnswerText.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include <nlohmann/json.hpp>

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
        return "too many hosts, or the account is refused";
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

SReadAnswer ReadForm(const SAnswerForm& form, const std::vector<uint8_t>& bytes)
{
    SReadAnswer read;
    CByteReader reader(bytes);
    Fields fields = Fields::object();
    form.pRead(reader, fields);
    read.bGood = !reader.Failed();
    if (!read.bGood) {
        read.strText = "answered with " + std::to_string(bytes.size()) + " bytes that are no whole record";
        return read;
    }
    read.strText = form.pShow(fields);
    if (!fields.empty()) {
        read.pFields = std::make_shared<Fields>(std::move(fields));
    }
    return read;
}

} // namespace

SReadAnswer ReadAnswer(const SConsoleCommand& command, const SAnswer& answer)
{
    if (answer.kind == SAnswer::EKind::Failure) {
        return {FailureText(answer.nCode) + " (" + CodeText(answer.nCode) + ")", false, nullptr};
    }
    if (command.pForm == nullptr) {
        return {"answered with " + std::to_string(answer.bytes.size()) + " bytes " +
                    HexText(answer.bytes.data(), answer.bytes.size()),
                true, nullptr};
    }
    return ReadForm(*command.pForm, answer.bytes);
}

void HideSecrets(const SConsoleCommand& command, SAnswer& answer)
{
    if (command.kind != SConsoleCommand::EKind::Request) {
        return;
    }
    // The repeated record has a result head in front of it where the request has the option head.
    constexpr std::size_t kShift =
        sizeof(ORVA2_DECODER_TVW::S_Decoder_Default_Result) - sizeof(_kest_tvwall_opt_info);
    for (const SSpan& secret : command.payload.secrets) {
        const std::size_t nBegin = std::min(secret.nOffset + kShift, answer.bytes.size());
        const std::size_t nEnd = std::min(nBegin + secret.nSize, answer.bytes.size());
        std::fill(answer.bytes.begin() + static_cast<std::ptrdiff_t>(nBegin),
                  answer.bytes.begin() + static_cast<std::ptrdiff_t>(nEnd), uint8_t{'*'});
    }
}

} // namespace standin_host
