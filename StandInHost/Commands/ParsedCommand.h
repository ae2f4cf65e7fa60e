#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "Commands/Records/Bytes.h"

namespace standin_host {

struct SAnswerForm;

// A line of the console as it was understood: what the program does, or what the plug-in is asked for.
struct SConsoleCommand {
    enum class EKind {
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

    EKind kind = EKind::None;
    std::string strTitle; // as the user reads it, such as "window delete 3"

    unsigned int nCmdID = 0;
    bool bHasReply = true;
    SRecord payload;
    const SAnswerForm* pForm = nullptr; // how a good answer reads; null: as it is

    std::optional<std::size_t> nNotifications; // Watch: ends after so many
    std::string strScriptFile;                 // Script: "-" is standard input
    std::string strHelp;                       // Help: the text
};

// Where a command can be given; each has the commands that make sense there.
enum EPlace : unsigned { PLACE_COMMAND_LINE = 1, PLACE_SCRIPT = 2, PLACE_SHELL = 4 };

} // namespace standin_host
