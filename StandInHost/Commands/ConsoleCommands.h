#pragma once
// The commands of the console program: names, arguments, and what each asks of the plug-in.

#include <string>
#include <vector>

#include "Commands/ParsedCommand.h"

namespace CLI {
class App;
class Error;
} // namespace CLI

namespace standin_host {

// Adds the commands available in a place to a command line. Parsing it fills the command, or throws
// UsageError or the parser's own errors. The command outlives the parsing.
void AddConsoleCommands(CLI::App& app, ConsoleCommand& command, Place place);

// Throws UsageError when the parsed line has words left over, or names no command or only part of one.
void CheckParsedCommand(const CLI::App& app);

// Throws UsageError for a line that was not taken because of this fault, or of an unknown option in it.
[[noreturn]] void RefuseLine(const CLI::App& app, const std::string& fault);

// The help of the command that the line names, or of all. Throws UsageError when it names an unknown one.
std::string HelpOf(const CLI::App& app);

// What stands at a place, counted from 0, among the words of a command: the name of a value such as "WINDOW"
// or "FILE", or all there are, such as "on|off". Empty for a group, and past the last place.
std::string ValueAt(const CLI::App& command, std::size_t place);

// One line of a script, already split into words. Throws UsageError.
ConsoleCommand ParseScriptLine(const std::vector<std::string>& words);
// The same for the shell, where --help after a command, or help before it, asks for its help.
ConsoleCommand ParseShellLine(std::vector<std::string> words);

// The login with an account.
ConsoleCommand LoginCommand(const std::string& user, const std::string& password);

} // namespace standin_host
