#pragma once
// The commands of the console program: names, arguments, and what each asks of the plug-in.

#include <string>
#include <vector>

#include "Commands/ParsedCommand.h"

namespace CLI {
class App;
}

namespace standin_host {

// Adds the commands available in a place to a command line. Parsing it fills the command, or throws
// UsageError or the parser's own errors. The command outlives the parsing.
void AddConsoleCommands(CLI::App& app, ConsoleCommand& command, Place place);

// Throws UsageError when the parsed line has words left over, or names no command or only part of one.
void CheckParsedCommand(const CLI::App& app);

// One line of a script, already split into words. Throws UsageError.
ConsoleCommand ParseScriptLine(const std::vector<std::string>& words);
// The same for the shell, where --help after a command, or help before it, asks for its help.
ConsoleCommand ParseShellLine(std::vector<std::string> words);

// The login with an account.
ConsoleCommand LoginCommand(const std::string& user, const std::string& password);

} // namespace standin_host
