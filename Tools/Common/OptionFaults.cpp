#include "Tools/Common/OptionFaults.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include <CLI/CLI.hpp>

#include "Tools/Common/Nearest.h"
#include "Tools/Common/Numbers.h"
#include "Tools/Common/TerminalText.h"

namespace tools {

namespace {

// The library's errors begin with the name of the option, or have it after some words.
std::string FirstName(std::string_view text)
{
    if (const auto option = text.find("--"); option != std::string_view::npos) {
        text.remove_prefix(option);
    }
    return std::string(text.substr(0, text.find_first_of(": ")));
}

std::string LastName(std::string_view text) { return std::string(text.substr(text.rfind(' ') + 1)); }

template <class TError>
bool Is(const CLI::Error& error)
{
    return dynamic_cast<const TError*>(&error) != nullptr;
}

} // namespace

std::string OptionFault(const CLI::Error& error)
{
    const std::string text = error.what();
    const std::string name = FirstName(text);
    if (Is<CLI::RuntimeError>(error)) {
        return error.what(); // our own
    }
    if (Is<CLI::ValidationError>(error)) { // the checks are our own, too
        return name + text.substr(std::min(text.size(), text.find(':') + 1));
    }
    if (Is<CLI::RequiredError>(error)) {
        return name + " is required";
    }
    if (Is<CLI::ArgumentMismatch>(error)) {
        const bool missing = text.find("missing") != std::string::npos;
        return name + (missing ? " needs a value" : " is given more than once");
    }
    if (Is<CLI::RequiresError>(error)) {
        return name + " needs " + LastName(text);
    }
    if (Is<CLI::ExcludesError>(error)) {
        const std::string other = LastName(text); // the library names the two in any order
        return "either " + std::min(name, other) + " or " + std::max(name, other) + ", not both";
    }
    return Is<CLI::ConversionError>(error) ? name + " does not take that value"
                                           : "the command line cannot be understood; see --help";
}

std::string UnknownOption(const CLI::App& app, const std::string& argument)
{
    const std::string name = argument.substr(0, argument.find('='));
    std::vector<std::string> known;
    for (const CLI::App* level = &app; level != nullptr; level = level->get_parent()) {
        for (const CLI::Option* option : level->get_options()) {
            for (const std::string& longName : option->get_lnames()) {
                known.push_back("--" + longName);
            }
        }
    }
    const std::string nearest = DidYouMean(name, known);
    return "unknown option '" + OneLine(name) + "'" + (nearest.empty() ? "; see --help" : nearest);
}

std::function<std::string(const std::string&)> NumberFrom(std::int64_t lowest, std::int64_t highest)
{
    return [lowest, highest](const std::string& text) {
        const auto number = ParseDecimal<std::int64_t>(text);
        const bool good = number && *number >= lowest && *number <= highest;
        return good ? std::string()
                    : "takes a number from " + std::to_string(lowest) + " to " + std::to_string(highest) +
                          ", not '" + OneLine(text) + "'";
    };
}

} // namespace tools
