#pragma once

#include <memory>
#include <string>

#include "Commands/ConsoleCommands.h"
#include "Commands/Records/AnswerForms.h"
#include "Host/Command.h"

namespace standin_host {

// What an answer says.
struct SReadAnswer {
    std::string strText; // in words: "done", "device error (0x20000002)", a table
    std::string strHint; // after a failure: what to look at
    bool bGood = false;  // false for a failure, and for bytes that do not hold what they should
    std::shared_ptr<const Fields> pFields; // by name; null where there are none
};

SReadAnswer ReadAnswer(const SConsoleCommand& command, const SAnswer& answer);

// Most answers repeat the request's record: blanks the passwords in it, so that they are printed nowhere.
void HideSecrets(const SConsoleCommand& command, SAnswer& answer);

} // namespace standin_host
