#pragma once

namespace standin_host {

class HostEvents;
class Output;
class Script;
struct Options;

// Prints what the login, where a user is known, and the command or the script's commands would queue, and
// connects to nothing. Passwords are neither asked for nor printed. script is null for a single command.
// Throws ExitError.
void DryRun(const Options& options, HostEvents& events, Script* script, Output& output);

} // namespace standin_host
