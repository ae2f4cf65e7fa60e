#pragma once

#include <string>

#include "Command.h"
#include "ConsoleCommands.h"

namespace standin_host {

// What an answer says, in words: "done", "device error (0x20000002)".
std::string DescribeAnswer(const SConsoleCommand& command, const SAnswer& answer);

} // namespace standin_host
