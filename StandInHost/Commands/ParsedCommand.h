#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "Commands/Records/Bytes.h"

namespace standin_host {

struct AnswerForm;

// A parsed console line: what the program does, or what it asks of the plug-in.
struct ConsoleCommand {
    enum class Kind {
        None,    // no command was given
        Request, // the host command below
        Login,   // the login with the session's own account
        Watch,
        Script,
        Shell,
        // In the shell only.
        Help,
        Codes,
        Connect,
        Disconnect,
        Exit,
    };

    Kind kind = Kind::None;
    std::string title; // as the user reads it, such as "window delete 3"

    unsigned int cmdID = 0;
    bool hasReply = true;
    uint32_t optType = 0; // that the payload begins with, where it has an option head
    Record payload;
    const AnswerForm* form = nullptr; // how to read a good answer; null: print it as is

    std::optional<std::size_t> notifications; // Watch: ends after that many
    std::string scriptFile;                   // Script: "-" is standard input
    std::string help;                         // Help: the text
};

// Where a command can be given; each place has the commands that make sense there.
enum Place : unsigned { kPlaceCommandLine = 1, kPlaceScript = 2, kPlaceShell = 4 };

} // namespace standin_host
