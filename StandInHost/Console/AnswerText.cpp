#include "Console/AnswerText.h"

#include <algorithm>
#include <utility>

#include <nlohmann/json.hpp>

#include "Commands/Records/FailureCodes.h"
#include "Tools/Common/Hex.h"
#include "TvwallProtocol.h"

namespace standin_host {

namespace {

ReadableAnswer ReadForm(const AnswerForm& form, const std::vector<uint8_t>& bytes)
{
    ReadableAnswer read;
    ByteReader reader(bytes);
    Fields fields = Fields::object();
    form.read(reader, fields);
    read.good = !reader.Failed();
    if (!read.good) {
        read.text = "answered with " + std::to_string(bytes.size()) + " bytes that are no whole record";
        read.hint = "--trace shows what the decoder sent";
        return read;
    }
    read.text = form.show(fields);
    if (!fields.empty()) {
        read.fields = std::make_shared<Fields>(std::move(fields));
    }
    return read;
}

} // namespace

ReadableAnswer ReadAnswer(const ConsoleCommand& command, const HostAnswer& answer)
{
    if (answer.kind == HostAnswer::Kind::Failure) {
        const FailureCode& failure = FailureOf(answer.hostCode);
        return {std::string(failure.meaning) + " (" + CodeText(answer.hostCode) + ")", failure.hint, false,
                nullptr};
    }
    if (command.form == nullptr) {
        return {"answered with " + std::to_string(answer.bytes.size()) + " bytes " +
                    tools::HexText(answer.bytes.data(), answer.bytes.size()),
                "", true, nullptr};
    }
    return ReadForm(*command.form, answer.bytes);
}

void HideSecrets(const ConsoleCommand& command, HostAnswer& answer)
{
    if (command.kind != ConsoleCommand::Kind::Request) {
        return;
    }
    // The repeated record follows a result head where the request has the option head.
    constexpr std::size_t kShift = sizeof(ORVA2_DECODER_TVW::S_Decoder_Default_Result) -
                                   sizeof(ORVA_NET_PROTOCOL::_kest_tvwall_opt_info);
    for (const Span& secret : command.payload.secrets) {
        const std::size_t begin = std::min(secret.offset + kShift, answer.bytes.size());
        const std::size_t end = std::min(begin + secret.size, answer.bytes.size());
        std::fill(answer.bytes.begin() + static_cast<std::ptrdiff_t>(begin),
                  answer.bytes.begin() + static_cast<std::ptrdiff_t>(end), uint8_t{'*'});
    }
}

} // namespace standin_host
