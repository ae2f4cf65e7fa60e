#include "Console/Completion.h"

#include <algorithm>
#include <filesystem>

#include <CLI/CLI.hpp>

#include "Commands/ConsoleCommands.h"
#include "Console/WordSplitting.h"

namespace standin_host {

namespace {

// Where the words so far have led: to a command, and maybe to an option that wants its value.
struct SPosition {
    const CLI::App* pApp;
    const CLI::Option* pValueOf = nullptr;

    void Follow(const std::string& strWord)
    {
        if (pValueOf != nullptr) {
            pValueOf = nullptr;
        } else if (strWord.starts_with('-')) {
            const CLI::Option* pOption = pApp->get_option_no_throw(strWord);
            const bool bValue = pOption != nullptr && pOption->get_items_expected_max() > 0;
            pValueOf = bValue ? pOption : nullptr;
        } else {
            const auto named =
                pApp->get_subcommands([&](const CLI::App* pSub) { return pSub->get_name() == strWord; });
            pApp = named.empty() ? pApp : named.front();
        }
    }

    bool WantsFile() const
    {
        if (pValueOf != nullptr) {
            return pValueOf->get_type_name() == "FILE";
        }
        const auto options = pApp->get_options();
        return std::any_of(options.begin(), options.end(), [](const CLI::Option* pOption) {
            return pOption->get_positional() && pOption->get_name(true) == "FILE";
        });
    }

    std::vector<std::string> OptionNames() const
    {
        std::vector<std::string> names;
        for (const CLI::Option* pOption : pApp->get_options()) {
            for (const std::string& strName : pOption->get_lnames()) {
                names.push_back("--" + strName);
            }
        }
        return names;
    }

    std::vector<std::string> CommandNames() const
    {
        std::vector<std::string> names;
        for (const CLI::App* pSub : pApp->get_subcommands([](const CLI::App*) { return true; })) {
            names.push_back(pSub->get_name());
        }
        return names;
    }
};

std::vector<std::string> Files(const std::string& strWord)
{
    namespace fs = std::filesystem;
    const std::string strFolder = strWord.substr(0, strWord.rfind('/') + 1);
    std::vector<std::string> names;
    std::error_code error;
    fs::directory_iterator entry(strFolder.empty() ? "." : strFolder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        std::error_code ignored;
        names.push_back(strFolder + entry->path().filename().string() +
                        (entry->is_directory(ignored) ? "/" : ""));
    }
    return names;
}

} // namespace

SCompletion CompleteLine(std::string_view line)
{
    auto written = SplitWrittenLine(line);
    if (!written) {
        return {};
    }
    if (!written->words.empty() && written->words.front() == "help") {
        written->words.erase(written->words.begin());
    }
    SConsoleCommand ignored;
    CLI::App app;
    AddConsoleCommands(app, ignored, PLACE_SHELL);
    SPosition position{&app};
    for (const std::string& strWord : written->words) {
        position.Follow(strWord);
    }

    SCompletion completion{written->strLast, {}};
    if (position.pValueOf == nullptr && completion.strWord.starts_with('-')) {
        completion.candidates = position.OptionNames();
    } else if (position.WantsFile()) {
        completion.candidates = Files(completion.strWord);
    } else if (position.pValueOf == nullptr) {
        completion.candidates = position.CommandNames();
    }
    std::erase_if(completion.candidates, [&](const std::string& strCandidate) {
        return !strCandidate.starts_with(completion.strWord);
    });
    std::sort(completion.candidates.begin(), completion.candidates.end());
    return completion;
}

std::string CommonRest(const SCompletion& completion)
{
    if (completion.candidates.empty()) {
        return "";
    }
    std::string_view common = completion.candidates.front();
    for (const std::string& strCandidate : completion.candidates) {
        const auto differ =
            std::mismatch(common.begin(), common.end(), strCandidate.begin(), strCandidate.end());
        common = common.substr(0, static_cast<std::size_t>(differ.first - common.begin()));
    }
    std::string strRest;
    for (const char c : common.substr(completion.strWord.size())) {
        strRest += std::string_view(" \t\\'\"#").find(c) == std::string_view::npos ? "" : "\\";
        strRest += c;
    }
    const bool bOnly = completion.candidates.size() == 1 && !common.ends_with('/');
    return strRest + (bOnly ? " " : "");
}

} // namespace standin_host
