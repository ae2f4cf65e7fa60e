#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

#include "Base/LineInput.h"
#include "Commands/ParsedCommand.h"

namespace standin_host {

class HostEvents;
class SourcePasswords;

// The commands of a script, one at a time, complete with their passwords.
class Script {
public:
    // Waits for input of a descriptor. False when the caller has done something else meanwhile; may throw.
    using AwaitInput = std::function<bool(int descriptor)>;

    virtual ~Script() = default;
    Script(const Script&) = delete;
    Script& operator=(const Script&) = delete;

    // The next command; false at the end. Throws UsageError, with the place, for a line that is wrong.
    virtual bool Next(ConsoleCommand& command, const AwaitInput& await) = 0;
    // How much has been taken, such as " (35 %)"; empty if that is unknown.
    virtual std::string Position() const = 0;

    // Of the line taken last, from 1.
    std::size_t Line() const { return m_line; }
    // "evening.txt:3"
    std::string Place() const { return m_name + ':' + std::to_string(m_line); }

protected:
    explicit Script(const std::string& path) : m_name(path == "-" ? "standard input" : path) {}

    const std::string m_name;
    std::size_t m_line = 0;
};

// Opens the script that the command names. Unless it is to be streamed, reads it to its end and checks all of
// it: each wrong line is told on standard error, the first kMaxTold of them. Asks for the passwords that wall
// files leave out, unless passwords is null. Throws ExitError with kExitUsage, with no text if all has been
// said, or after a signal. Events and passwords outlive the script.
std::unique_ptr<Script> OpenScript(const ConsoleCommand& command, HostEvents& events,
                                   SourcePasswords* passwords);
inline constexpr std::size_t kMaxTold = 20;

} // namespace standin_host
