#pragma once
// The commands of the console program: what each is called, what it takes, and what it asks of the plug-in.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Commands/Records/Bytes.h"

namespace CLI {
class App;
}

namespace standin_host {

struct SAnswerForm;

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

// Adds the commands of a place to a command line. Parsing it fills the command, or throws CUsageError or what
// the parser throws.
void AddConsoleCommands(CLI::App& app, SConsoleCommand& command, EPlace place);

// Throws CUsageError when the parsed line has words left over, or names no command or half of one.
void CheckParsedCommand(const CLI::App& app);

// One line of a script, already split into words. Throws CUsageError.
SConsoleCommand ParseScriptLine(const std::vector<std::string>& words);
// The same for the shell, where --help behind a command, or help in front of it, asks for its help.
SConsoleCommand ParseShellLine(std::vector<std::string> words);

} // namespace standin_host
