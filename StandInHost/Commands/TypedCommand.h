#pragma once

#include <string>

namespace CLI {
class App;
}

namespace standin_host {

// The parsed command as a person would type it: its words, then its options with their values, quoted where a
// line of a script needs it. Bytes that may hold a password are blanked.
std::string TypedCommand(const CLI::App& app);

} // namespace standin_host
