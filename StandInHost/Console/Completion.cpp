#include "Console/Completion.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <sstream>

#include <CLI/CLI.hpp>

#include "Base/ExitStatus.h"
#include "Base/Profiles.h"
#include "Base/WordSplitting.h"
#include "Commands/ConsoleCommands.h"
#include "Commands/SeenWindows.h"

namespace standin_host {

namespace {

bool IsNumber(const std::string& word)
{
    return word.size() > 1 && word.front() == '-' && std::isdigit(static_cast<unsigned char>(word[1])) != 0;
}

// Where the words so far lead: to a command, perhaps an option that wants its value, and so many words on.
struct Position {
    const CLI::App* command;
    const CLI::Option* valueOf = nullptr;
    std::size_t words = 0;

    void Follow(const std::string& word)
    {
        if (valueOf != nullptr) {
            valueOf = nullptr;
        } else if (word.starts_with('-') && !IsNumber(word)) {
            const CLI::Option* option = command->get_option_no_throw(word);
            const bool value = option != nullptr && option->get_items_expected_max() > 0;
            valueOf = value ? option : nullptr;
        } else {
            const auto named =
                command->get_subcommands([&](const CLI::App* sub) { return sub->get_name() == word; });
            words += named.empty() ? 1 : 0;
            command = named.empty() ? command : named.front();
        }
    }

    // What is wanted here: the name of a value, or all that there are.
    std::string Value() const
    {
        return valueOf != nullptr ? valueOf->get_type_name() : ValueAt(*command, words);
    }

    std::vector<std::string> OptionNames() const
    {
        std::vector<std::string> names;
        for (const CLI::Option* option : command->get_options()) {
            for (const std::string& name : option->get_lnames()) {
                names.push_back("--" + name);
            }
        }
        return names;
    }

    std::vector<std::string> CommandNames() const
    {
        std::vector<std::string> names;
        for (const CLI::App* sub : command->get_subcommands([](const CLI::App*) { return true; })) {
            names.push_back(sub->get_name());
        }
        return names;
    }
};

std::vector<std::string> Files(const std::string& word)
{
    namespace fs = std::filesystem;
    const std::string folder = word.substr(0, word.rfind('/') + 1);
    std::vector<std::string> names;
    std::error_code error;
    fs::directory_iterator entry(folder.empty() ? "." : folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        std::error_code ignored;
        names.push_back(folder + entry->path().filename().string() +
                        (entry->is_directory(ignored) ? "/" : ""));
    }
    return names;
}

// Of "on|off" both; of "1|4|9|16|N" those that are not names of something else.
std::vector<std::string> Choices(const std::string& value)
{
    std::vector<std::string> choices;
    std::istringstream text(value);
    for (std::string choice; std::getline(text, choice, '|');) {
        if (std::isupper(static_cast<unsigned char>(choice.front())) == 0) {
            choices.push_back(choice);
        }
    }
    return choices;
}

std::vector<std::string> ProfileNames()
{
    std::vector<std::string> names;
    try {
        for (const auto& [name, ignored] : ProfileFile().Load()) {
            names.push_back(name);
        }
    } catch (const UsageError&) { // is told when a profile is used
    }
    return names;
}

std::vector<std::string> Values(const std::string& value, const std::string& word, const SeenWindows& windows)
{
    if (value == "FILE") {
        return Files(word);
    }
    if (value == "PROFILE") {
        return ProfileNames();
    }
    return value == "WINDOW" ? windows.Ids() : Choices(value);
}

} // namespace

Completion CompleteLine(std::string_view line, const SeenWindows& windows)
{
    auto written = SplitWrittenLine(line);
    if (!written) {
        return {};
    }
    if (!written->words.empty() && written->words.front() == "help") {
        written->words.erase(written->words.begin());
    }
    ConsoleCommand ignored;
    CLI::App app;
    AddConsoleCommands(app, ignored, kPlaceShell);
    Position position{&app};
    for (const std::string& word : written->words) {
        position.Follow(word);
    }

    Completion completion{written->last, {}};
    if (position.valueOf == nullptr && completion.word.starts_with('-')) {
        completion.candidates = position.OptionNames();
    } else {
        completion.candidates = Values(position.Value(), completion.word, windows);
    }
    if (position.valueOf == nullptr && position.words == 0) {
        const auto names = position.CommandNames();
        completion.candidates.insert(completion.candidates.end(), names.begin(), names.end());
    }
    std::erase_if(completion.candidates,
                  [&](const std::string& candidate) { return !candidate.starts_with(completion.word); });
    std::sort(completion.candidates.begin(), completion.candidates.end());
    return completion;
}

std::string CommonRest(const Completion& completion)
{
    if (completion.candidates.empty()) {
        return "";
    }
    std::string_view common = completion.candidates.front();
    for (const std::string& candidate : completion.candidates) {
        const auto differ = std::mismatch(common.begin(), common.end(), candidate.begin(), candidate.end());
        common = common.substr(0, static_cast<std::size_t>(differ.first - common.begin()));
    }
    std::string rest;
    for (const char c : common.substr(completion.word.size())) {
        rest += std::string_view(" \t\\'\"#").find(c) == std::string_view::npos ? "" : "\\";
        rest += c;
    }
    const bool only = completion.candidates.size() == 1 && !common.ends_with('/');
    return rest + (only ? " " : "");
}

} // namespace standin_host
