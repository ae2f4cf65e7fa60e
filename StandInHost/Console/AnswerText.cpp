#include "Console/AnswerText.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include <nlohmann/json.hpp>

#include "Base/ExitStatus.h"
#include "Base/TimeText.h"
#include "Commands/Records/DeviceCodes.h"
#include "Commands/Records/FailureCodes.h"
#include "Tools/Common/Hex.h"
#include "Tools/Common/TerminalText.h"
#include "TvwallProtocol.h"

namespace standin_host {

namespace {

using namespace ORVA_NET_PROTOCOL;

Outcome OutcomeOf(const ConsoleCommand& command, const Ending& ending)
{
    const bool login = command.cmdID == KEST_CMD_REQUEST_LOGIN;
    if (ending.answer) {
        return ending.answer->kind == HostAnswer::Kind::Buffer  ? Outcome::Done
               : ending.answer->hostCode == KEST_RESULT_TIMEOUT ? Outcome::Timeout
               : login                                          ? Outcome::LoginRefused
                                                                : Outcome::Refused;
    }
    if (login && ending.exchange.deviceCode.value_or(0) != 0) {
        return Outcome::LoginRefused; // the plug-in answers only some refusals
    }
    if (ending.lost) {
        return Outcome::Lost;
    }
    if (ending.atWork) {
        return Outcome::Timeout;
    }
    if (!command.hasReply) {
        return Outcome::Queued;
    }
    return ending.exchange.sent && !ending.exchange.deviceCode ? Outcome::Timeout : Outcome::Unanswered;
}

// What came of the last request on the link; begins with "; ".
std::string ReplyText(const Exchange& exchange, const ReadableAnswer& read)
{
    if (exchange.deviceCode) {
        return "; the decoder's code is " + std::to_string(*exchange.deviceCode) +
               (read.deviceMeaning.empty() ? "" : ", " + tools::OneLine(read.deviceMeaning));
    }
    return exchange.sent ? "; no reply in " + SecondsText(exchange.waited) : "; nothing was sent";
}

std::string HintOf(const Ending& ending, const ReadableAnswer& read)
{
    if (ending.answer && ending.answer->hostCode != KEST_RESULT_DEVICE_ERROR) {
        return FailureOf(ending.answer->hostCode).hint;
    }
    if (read.outcome == Outcome::Timeout) {
        return FailureOf(KEST_RESULT_TIMEOUT).hint;
    }
    return ending.exchange.deviceCode == 0
               ? "the decoder did not refuse, but its reply is of no use; --trace shows it"
               : "";
}

void DescribeFailure(const Ending& ending, ReadableAnswer& read)
{
    const std::string reply = ReplyText(ending.exchange, read);
    if (ending.answer) {
        const uint32_t code = ending.answer->hostCode;
        read.text = std::string(FailureOf(code).meaning) + " (" + CodeText(code) + ")";
        read.text += code == KEST_RESULT_NOT_READY ? "" : reply; // which means that nothing was sent
    } else if (read.outcome == Outcome::Lost) {
        read.text = "link lost";
    } else if (read.outcome == Outcome::Timeout && !ending.exchange.deviceCode) {
        read.text = reply.substr(2);
    } else {
        read.text = "no answer" + reply;
    }
    read.hint = HintOf(ending, read);
}

void ReadForm(const AnswerForm& form, const std::vector<uint8_t>& bytes, ReadableAnswer& read)
{
    ByteReader reader(bytes);
    Fields fields = Fields::object();
    form.read(reader, fields);
    if (reader.Failed()) {
        read.outcome = Outcome::Malformed;
        read.text = "answered with " + std::to_string(bytes.size()) + " bytes that are no whole record";
        read.hint = "--trace shows what the decoder sent";
        return;
    }
    read.text = form.show(fields);
    if (!fields.empty()) {
        read.fields = std::make_shared<Fields>(std::move(fields));
    }
}

// In a reply to a login, some codes have a meaning of the link's own.
std::string DeviceMeaning(const Exchange& exchange, const DeviceCodes& codes)
{
    if (!exchange.deviceCode) {
        return "";
    }
    const char* own = exchange.url == "dologin" ? LoginMeaning(*exchange.deviceCode) : nullptr;
    return own != nullptr ? own : codes.Words(*exchange.deviceCode);
}

} // namespace

ReadableAnswer ReadEnding(const ConsoleCommand& command, const Ending& ending, const DeviceCodes& codes)
{
    ReadableAnswer read;
    read.outcome = OutcomeOf(command, ending);
    read.deviceCode = ending.exchange.deviceCode;
    read.deviceMeaning = DeviceMeaning(ending.exchange, codes);
    if (read.outcome == Outcome::Queued) {
        read.text = "queued and run, no answer wanted";
        read.text += read.deviceCode.value_or(0) == 0 ? "" : ReplyText(ending.exchange, read);
    } else if (read.outcome != Outcome::Done) {
        DescribeFailure(ending, read);
    } else if (command.form != nullptr) {
        ReadForm(*command.form, ending.answer->bytes, read);
    } else {
        const auto& bytes = ending.answer->bytes;
        read.text = "answered with " + std::to_string(bytes.size()) + " bytes " +
                    tools::HexText(bytes.data(), bytes.size());
    }
    return read;
}

ReadableAnswer ReadProfileWork(const ConsoleCommand& command, const Profile& settings)
{
    auto [text, fields] = command.profileWork(settings);
    ReadableAnswer read;
    read.text = std::move(text);
    if (!fields.is_null()) {
        read.fields = std::make_shared<Fields>(std::move(fields));
    }
    return read;
}

int StatusOf(Outcome outcome)
{
    switch (outcome) {
    case Outcome::Done:
    case Outcome::Queued:
        return kExitAllAnswered;
    case Outcome::Refused:
    case Outcome::Malformed:
        return kExitCommandFailed;
    case Outcome::Timeout:
    case Outcome::Unanswered:
        return kExitNoAnswer;
    case Outcome::Lost:
    case Outcome::NotConnected:
        return kExitConnection;
    case Outcome::LoginRefused:
        return kExitLoginRefused;
    }
    return kExitCommandFailed;
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
