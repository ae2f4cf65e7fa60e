#include "Commands/TypedCommand.h"

#include <CLI/CLI.hpp>

namespace standin_host {

namespace {

std::string Quoted(const std::string& word)
{
    constexpr char kPlain[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_@%+=:,./{}[]-";
    if (!word.empty() && word.find_first_not_of(kPlain) == std::string::npos) {
        return word;
    }
    std::string quoted = "'";
    for (const char c : word) {
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return quoted + '\'';
}

std::string Values(const CLI::Option& option)
{
    if (option.get_name() == "--hex") {
        return " ***"; // a record may hold a password
    }
    std::string text;
    for (const std::string& value : option.results()) {
        const bool joined = option.get_delimiter() != '\0' && !text.empty();
        text += (joined ? option.get_delimiter() : ' ') + Quoted(value);
    }
    return text;
}

} // namespace

std::string TypedCommand(const CLI::App& app)
{
    const CLI::App* command = &app;
    std::string typed;
    while (!command->get_subcommands().empty()) {
        command = command->get_subcommands().front();
        typed += (typed.empty() ? "" : " ") + command->get_name();
    }
    std::string options;
    for (const CLI::Option* option : command->get_options()) {
        if (option->count() == 0) {
            continue;
        }
        if (option->get_positional()) {
            typed += Values(*option);
        } else {
            options += ' ' + option->get_name();
            options += option->get_items_expected_max() == 0 ? "" : Values(*option);
        }
    }
    return typed + options;
}

} // namespace standin_host
