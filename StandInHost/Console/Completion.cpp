#include "Console/Completion.h"

#include <algorithm>
#include <filesystem>

#include <CLI/CLI.hpp>

#include "Base/WordSplitting.h"
#include "Commands/ConsoleCommands.h"

namespace standin_host {

namespace {

// Where the words so far lead: to a command, and perhaps an option that wants its value.
struct Position {
    const CLI::App* command;
    const CLI::Option* valueOf = nullptr;

    void Follow(const std::string& word)
    {
        if (valueOf != nullptr) {
            valueOf = nullptr;
        } else if (word.starts_with('-')) {
            const CLI::Option* option = command->get_option_no_throw(word);
            const bool value = option != nullptr && option->get_items_expected_max() > 0;
            valueOf = value ? option : nullptr;
        } else {
            const auto named =
                command->get_subcommands([&](const CLI::App* sub) { return sub->get_name() == word; });
            command = named.empty() ? command : named.front();
        }
    }

    bool WantsFile() const
    {
        if (valueOf != nullptr) {
            return valueOf->get_type_name() == "FILE";
        }
        const auto options = command->get_options();
        return std::any_of(options.begin(), options.end(), [](const CLI::Option* option) {
            return option->get_positional() && option->get_name(true) == "FILE";
        });
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

} // namespace

Completion CompleteLine(std::string_view line)
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
    } else if (position.WantsFile()) {
        completion.candidates = Files(completion.word);
    } else if (position.valueOf == nullptr) {
        completion.candidates = position.CommandNames();
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
