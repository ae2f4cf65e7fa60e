#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "Base/Profiles.h"
#include "Commands/Records/AnswerForms.h"
#include "Commands/Records/Bytes.h"
#include "TvwallProtocol.h"

namespace standin_host {

class SourcePasswords;

struct ProfileAnswer {
    std::string text;
    Fields fields; // null if there are none
};

// A parsed console line: what the program does, or what it asks of the plug-in.
struct ConsoleCommand {
    enum class Kind {
        None,    // no command was given
        Request, // the host command below
        Login,   // the login with the session's own account
        Watch,
        Script,
        Shell,
        Profile, // keeps or lists profiles
        Help,
        // In the shell only.
        Codes,
        Connect,
        Disconnect,
        Exit,
    };

    Kind kind = Kind::None;
    std::string title;              // as the user reads it, such as "window delete 3"
    std::string typed;              // as the user would type it, without what may be a password
    Fields args = Fields::object(); // its arguments by name, likewise

    unsigned int cmdID = 0;
    bool hasReply = true;
    bool readsFiles = false; // the payload was read from files, which may change
    uint32_t optType = 0;    // that the payload begins with, where it has an option head
    Record payload;
    const AnswerForm* form = nullptr; // how to read a good answer; null: print it as is

    // Puts passwords that are still missing into the payload; null: it is complete.
    std::function<void(ConsoleCommand& command, SourcePasswords& passwords)> complete;

    std::optional<std::size_t> notifications;          // Watch: ends after that many
    std::optional<std::chrono::milliseconds> watchFor; // Watch: ends after that time
    bool reconnect = false;                            // Watch: a lost link does not end it
    bool stream = false;                               // Script: runs each line as it comes
    bool stopOnFailure = false;                        // Script: ends at the first failure
    bool profileSettings = false;                      // Profile: the settings matter
    std::string scriptFile;                            // Script: "-" is standard input
    std::string help;                                  // Help: the text
    std::string profile;                               // Connect: where to, as whom; empty: as before
    // Profile: does the work with the settings in use. Throws UsageError.
    std::function<ProfileAnswer(const Profile& settings)> profileWork;
    std::vector<std::string> windows; // ids of those that the command names

    // Whether the command is one of those that carry an option.
    bool CarriesOption() const
    {
        using namespace ORVA_NET_PROTOCOL;
        return cmdID == KEST_CMD_TVWALL_DECODE_OPTION || cmdID == KEST_CMD_TVWALL_DECODE_SAVE_CONFIG ||
               cmdID == KEST_CMD_TVWALL_DECODE_GET_CONFIG;
    }
};

// Asks for the passwords that are still missing.
inline void Complete(ConsoleCommand& command, SourcePasswords& passwords)
{
    if (const auto complete = std::exchange(command.complete, nullptr)) {
        complete(command, passwords);
    }
}

// Where a command can be given; each place has the commands that make sense there.
enum Place : unsigned { kPlaceCommandLine = 1, kPlaceScript = 2, kPlaceShell = 4 };

} // namespace standin_host
