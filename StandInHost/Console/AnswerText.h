#pragma once

#include <memory>
#include <string>

#include "Commands/ConsoleCommands.h"
#include "Commands/Records/AnswerForms.h"
#include "Host/Command.h"

namespace standin_host {

// What an answer says.
struct ReadableAnswer {
    std::string text;  // in words: "done", "device error (0x20000002)", a table
    std::string hint;  // after a failure: what to look at
    bool good = false; // false for a failure, and for bytes that do not hold what they should
    std::shared_ptr<const Fields> fields; // by name; null where there are none
};

ReadableAnswer ReadAnswer(const ConsoleCommand& command, const HostAnswer& answer);

// Most answers repeat the request's record: blanks the passwords in it, so that they are printed nowhere.
void HideSecrets(const ConsoleCommand& command, HostAnswer& answer);

} // namespace standin_host
