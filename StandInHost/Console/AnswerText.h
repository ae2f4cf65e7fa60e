#pragma once

#include <memory>
#include <string>

#include "Commands/ConsoleCommands.h"
#include "Commands/Records/AnswerForms.h"
#include "Host/Command.h"

namespace standin_host {

// What an answer says.
struct ReadableAnswer {
    std::string text;                     // in words: "done", "device error (0x20000002)", a table
    std::string hint;                     // after a failure: what to look at
    bool good = false;                    // false for a failure and for malformed bytes
    std::shared_ptr<const Fields> fields; // by name; null if there are none
};

ReadableAnswer ReadAnswer(const ConsoleCommand& command, const HostAnswer& answer);

// Blanks the passwords in the request's record, which most answers repeat, so that they are never printed.
void HideSecrets(const ConsoleCommand& command, HostAnswer& answer);

} // namespace standin_host
