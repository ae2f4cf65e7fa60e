#include "Console/AnswerText.h"

#include <algorithm>
#include <utility>

#include <nlohmann/json.hpp>

#include "Commands/Records/FailureCodes.h"
#include "Tools/Common/Hex.h"
#include "TvwallProtocol.h"

namespace standin_host {

namespace {

SReadAnswer ReadForm(const SAnswerForm& form, const std::vector<uint8_t>& bytes)
{
    SReadAnswer read;
    CByteReader reader(bytes);
    Fields fields = Fields::object();
    form.pRead(reader, fields);
    read.bGood = !reader.Failed();
    if (!read.bGood) {
        read.strText = "answered with " + std::to_string(bytes.size()) + " bytes that are no whole record";
        read.strHint = "--trace shows what the decoder sent";
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
        const SFailureCode& failure = FailureOf(answer.nCode);
        return {std::string(failure.szMeaning) + " (" + CodeText(answer.nCode) + ")", failure.szHint, false,
                nullptr};
    }
    if (command.pForm == nullptr) {
        return {"answered with " + std::to_string(answer.bytes.size()) + " bytes " +
                    tools::HexText(answer.bytes.data(), answer.bytes.size()),
                "", true, nullptr};
    }
    return ReadForm(*command.pForm, answer.bytes);
}

void HideSecrets(const SConsoleCommand& command, SAnswer& answer)
{
    if (command.kind != SConsoleCommand::EKind::Request) {
        return;
    }
    // The repeated record has a result head in front of it where the request has the option head.
    constexpr std::size_t kShift = sizeof(ORVA2_DECODER_TVW::S_Decoder_Default_Result) -
                                   sizeof(ORVA_NET_PROTOCOL::_kest_tvwall_opt_info);
    for (const SSpan& secret : command.payload.secrets) {
        const std::size_t nBegin = std::min(secret.nOffset + kShift, answer.bytes.size());
        const std::size_t nEnd = std::min(nBegin + secret.nSize, answer.bytes.size());
        std::fill(answer.bytes.begin() + static_cast<std::ptrdiff_t>(nBegin),
                  answer.bytes.begin() + static_cast<std::ptrdiff_t>(nEnd), uint8_t{'*'});
    }
}

} // namespace standin_host
