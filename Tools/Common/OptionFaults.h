#pragma once
// What both programs say of a wrong command line.

#include <cstdint>
#include <functional>
#include <string>

namespace CLI {
class App;
class Error;
} // namespace CLI

namespace tools {

// What is wrong with a command line, in one line for the user that repeats no value: it may be a password.
std::string OptionFault(const CLI::Error& error);

// For an option of the program that does not exist: "unknown option '--usr'; did you mean '--user'?". Its
// value is left out. The options of app and of those above it count.
std::string UnknownOption(const CLI::App& app, const std::string& argument);

// A check for an option that takes a number.
std::function<std::string(const std::string&)> NumberFrom(std::int64_t lowest, std::int64_t highest);

} // namespace tools
