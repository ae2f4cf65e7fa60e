#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Commands/ConsoleCommands.h"
#include "Commands/Records/AnswerForms.h"
#include "Host/Command.h"

namespace standin_host {

class DeviceCodes;

// How a command ended.
struct Ending {
    std::optional<HostAnswer> answer;
    Exchange exchange;
    bool lost = false;   // the link was lost before an answer came
    bool atWork = false; // the plug-in has not ended the command yet
};

enum class Outcome {
    Done,
    Queued, // and run; no answer was wanted
    Refused,
    Malformed, // the answer is no whole record
    Timeout,
    Lost,
    Unanswered, // the plug-in ended the command without an answer, although no reply is missing
    LoginRefused,
    NotConnected,
};

// What an ending says.
struct ReadableAnswer {
    Outcome outcome = Outcome::Done;
    std::string text;                     // in words: "done", "device error (0x20000002)", a table
    std::string hint;                     // after a failure: what to look at, if there is anything
    std::optional<uint32_t> deviceCode;   // of the decoder's reply, where one came
    std::string deviceMeaning;            // its words, where there are any
    std::shared_ptr<const Fields> fields; // by name; null if there are none

    bool Good() const { return outcome == Outcome::Done || outcome == Outcome::Queued; }
};

ReadableAnswer ReadEnding(const ConsoleCommand& command, const Ending& ending, const DeviceCodes& codes);

// Does the work of a profile command, and says what came of it. Throws UsageError.
ReadableAnswer ReadProfileWork(const ConsoleCommand& command, const Profile& settings);

// The exit status that an outcome stands for.
int StatusOf(Outcome outcome);

// Blanks the passwords in the request's record, which most answers repeat, so that they are never printed.
void HideSecrets(const ConsoleCommand& command, HostAnswer& answer);

} // namespace standin_host
