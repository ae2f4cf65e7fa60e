#include "Commands/ConsoleCommands.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <utility>

#include <CLI/CLI.hpp>

#include "Base/ExitStatus.h"
#include "Commands/CommandFamilies.h"
#include "Commands/TypedCommand.h"
#include "Tools/Common/Nearest.h"
#include "Tools/Common/OptionFaults.h"

namespace standin_host {

namespace {

// A command without arguments that the program carries out itself.
template <ConsoleCommand::Kind kind>
void SetUpKind(CLI::App& app, ConsoleCommand& command)
{
    app.callback([&command] { command.kind = kind; });
}
using Kind = ConsoleCommand::Kind;

struct Row {
    const char* group; // first word of a command of two words, else empty
    const char* name;
    const char* words; // what follows, see WordsOf
    const char* help;
    const char* example;
    CommandSetup* setUp;
    unsigned places = kPlaceCommandLine | kPlaceScript | kPlaceShell;
};

constexpr Row kRows[] = {
    {"", "login", "", "log in and say who answered", "login", SetUpLogin},
    {"", "logout", "", "log out; the decoder then refuses what follows", "logout", SetUpLogout},
    {"", "info", "", "read the decoder's name, model and versions; its channels follow as a notification",
     "info", SetUpInfo},
    {"", "config", "", "read the decoder's basic configuration", "config", SetUpConfig},
    {"layout", "get", "", "read the grid of screens and what is bound to them", "layout get", SetUpLayoutGet},
    {"layout", "set", "ROWS COLUMNS", "set the size of the grid", "layout set 2 3", SetUpLayoutSet},
    {"layout", "bind", "OUTPUT X Y ...", "bind decoder outputs to screens", "layout bind 1 0 0 2 1 0",
     SetUpLayoutBind},
    {"layout", "unbind", "X Y ...", "free screens", "layout unbind 0 0 1 0", SetUpLayoutUnbind},
    {"window", "create", "WINDOW X Y WIDTH HEIGHT ...", "put windows on the wall",
     "window create 1 0 0 960 540 --mode 4 --osd 1,2,3,4", SetUpWindowCreate},
    {"window", "move", "WINDOW X Y WIDTH HEIGHT ...", "move or resize windows", "window move 1 -10 0 960 540",
     SetUpWindowMove},
    {"window", "split", "WINDOW X Y WIDTH HEIGHT ...", "split windows anew into sub-windows",
     "window split 1 0 0 960 540 --mode 9", SetUpWindowSplit},
    {"window", "raise", "WINDOW", "put a window in front of the others", "window raise 1", SetUpWindowRaise},
    {"window", "delete", "WINDOW ...", "take windows off the wall", "window delete 1 2", SetUpWindowDelete},
    {"wall", "apply", "FILE", "put a whole wall, windows and sources, in place of what is there",
     "wall apply wall.json", SetUpWallApply},
    {"wall", "clear", "", "take every window off the wall", "wall clear", SetUpWallClear},
    {"media", "play", "WINDOW INDEX ADDRESS", "show a source in a sub-window",
     "media play 1 0 192.0.2.10:554 --channel 3 --source-user viewer --source-password-file secret",
     SetUpMediaPlay},
    {"media", "stop", "WINDOW INDEX ...", "end what sub-windows show", "media stop 1 0 1 1", SetUpMediaStop},
    {"", "playback", "WINDOW INDEX TYPE VALUE ...", "control recorded video in sub-windows",
     "playback 1 0 2 4", SetUpPlayback},
    {"audio", "play", "WINDOW INDEX CHANNEL ...", "switch the sound of sub-windows on", "audio play 1 0 3",
     SetUpAudioPlay},
    {"audio", "stop", "WINDOW INDEX ...", "switch the sound of sub-windows off", "audio stop 1 0",
     SetUpAudioStop},
    {"audio", "get", "", "read which sub-windows carry sound", "audio get", SetUpAudioGet},
    {"group", "add", "GROUP", "add a channel group",
     "group add 7 --name doors --channels 1,2,3 --interval 10", SetUpGroupAdd},
    {"group", "set", "GROUP", "change a channel group",
     "group set 7 --name doors --channels 1,2 --interval 20", SetUpGroupSet},
    {"group", "delete", "GROUP ...", "delete channel groups", "group delete 7 8", SetUpGroupDelete},
    {"group", "get", "[GROUP]", "read channel groups", "group get 7", SetUpGroupGet},
    {"polling", "start", "WINDOW INDEX GROUP ...", "cycle through a channel group in sub-windows",
     "polling start 1 0 7", SetUpPollingStart},
    {"polling", "stop", "WINDOW INDEX ...", "end polling in sub-windows", "polling stop 1 0",
     SetUpPollingStop},
    {"", "border", "WINDOW INDEX on|off ...", "draw or hide the borders of sub-windows",
     "border 1 0 on 1 1 off", SetUpBorder},
    {"", "zoom", "WINDOW INDEX on|off", "let a sub-window fill its window", "zoom 1 0 on", SetUpZoom},
    {"window-config", "get", "", "read the wall's display switches", "window-config get",
     SetUpWindowConfigGet},
    {"window-config", "set", "on|off on|off", "set the wall's display switches", "window-config set on off",
     SetUpWindowConfigSet},
    {"", "watch", "", "print the decoder's notifications of changes until Ctrl-C; info shows all channels",
     "watch", SetUpWatch},
    {"", "script", "FILE",
     "check and run a file of commands, one per line, # for comments, with one login for all",
     "script evening.txt", SetUpScript, kPlaceCommandLine | kPlaceShell},
    {"", "shell", "", "take commands from the terminal, with history and completion", "shell",
     SetUpKind<Kind::Shell>, kPlaceCommandLine},
    {"", "raw", "ID", "queue any host command with any payload", "raw 0x50006", SetUpRaw},
    {"profile", "list", "", "show the profiles", "profile list", SetUpProfileList,
     kPlaceCommandLine | kPlaceShell},
    {"profile", "add", "NAME", "keep decoder, user and files in use as a profile; never a password",
     "profile add entrance", SetUpProfileAdd, kPlaceCommandLine | kPlaceShell},
    {"profile", "remove", "PROFILE ...", "forget profiles", "profile remove entrance", SetUpProfileRemove,
     kPlaceCommandLine | kPlaceShell},
    {"", "connect", "[PROFILE]", "connect and log in anew, or with a profile", "connect entrance",
     SetUpConnect, kPlaceShell},
    {"", "disconnect", "", "end the connection; the next command opens another", "disconnect",
     SetUpKind<Kind::Disconnect>, kPlaceShell},
    {"", "codes", "", "say what the failure codes mean and what to look at", "codes", SetUpKind<Kind::Codes>,
     kPlaceShell},
    {"", "help", "[COMMAND]", "show the commands, or what one of them takes", "help window create",
     SetUpKind<Kind::Help>, kPlaceCommandLine | kPlaceShell},
    {"", "exit", "", "leave the shell, as Ctrl-D does", "exit", SetUpKind<Kind::Exit>, kPlaceShell},
    {"", "quit", "", "leave the shell, as exit does", "quit", SetUpKind<Kind::Exit>, kPlaceShell},
};

// The row of a command; null for a group and for the program itself.
const Row* RowOf(const CLI::App& command)
{
    const CLI::App* parent = command.get_parent();
    const bool inGroup = parent != nullptr && parent->get_parent() != nullptr;
    const std::string group = inGroup ? parent->get_name() : "";
    const auto* found = std::find_if(std::begin(kRows), std::end(kRows), [&](const Row& row) {
        return parent != nullptr && command.get_name() == row.name && group == row.group;
    });
    return found == std::end(kRows) ? nullptr : found;
}

// Shows the words that a command takes one by one, also where the library takes them as one list.
class UsageFormatter : public CLI::Formatter {
public:
    std::string make_usage(const CLI::App* app, std::string name) const override
    {
        const Row* row = RowOf(*app);
        if (row == nullptr) {
            return CLI::Formatter::make_usage(app, std::move(name));
        }
        return "Usage: " + name + " [OPTIONS]" + (*row->words == '\0' ? "" : " ") + row->words + '\n';
    }
};

std::string Example(const Row& row, Place place)
{
    const char* program =
        place == kPlaceCommandLine ? "tvwall-host --decoder 192.0.2.7:9000 --user admin " : "";
    return std::string("\n  ") + program + row.example;
}

// The commands that only the shell has.
std::string ShellCommands()
{
    std::string text = "Further commands in the shell:";
    for (const Row& row : kRows) {
        if (row.places == kPlaceShell) {
            const std::string form = std::string(row.name) + (*row.words == '\0' ? "" : " ") + row.words;
            text += "\n  " + form + std::string(20 - std::min<std::size_t>(form.size(), 18), ' ') + row.help;
        }
    }
    return text + "\n\n";
}

CLI::App& GroupOf(CLI::App& app, const std::string& group)
{
    if (group.empty()) {
        return app;
    }
    const auto groups =
        app.get_subcommands([&](const CLI::App* command) { return command->get_name() == group; });
    if (!groups.empty()) {
        return *groups.front();
    }
    return *app.add_subcommand(group, group + " commands");
}

std::vector<std::string> NamesOf(const CLI::App& app)
{
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
        names.push_back(command->get_name());
    }
    return names;
}

// Where to find the possible words; for a group, its few commands themselves.
std::string Choices(const CLI::App& app)
{
    const auto names = NamesOf(app);
    if (app.get_parent() == nullptr) {
        const bool shell = std::find(names.begin(), names.end(), "exit") != names.end();
        return shell ? "; see help" : "; see tvwall-host --help";
    }
    std::string choices;
    for (const std::string& name : names) {
        choices += (choices.empty() ? "; there is " : ", ") + name;
    }
    return choices;
}

// What to do about an unknown word after the words that lead to these commands.
std::string Remedy(const CLI::App& commands, const std::string& path, const std::string& word)
{
    const std::string nearest = tools::Nearest(word, NamesOf(commands));
    return nearest.empty() ? Choices(commands) : "; did you mean '" + path + nearest + "'?";
}

CLI::App& AddCommand(CLI::App& group, ConsoleCommand& command, const Row& row)
{
    CLI::App& line = *group.add_subcommand(row.name, row.help);
    line.preparse_callback([&command, &row](std::size_t) {
        command.title = *row.group == '\0' ? row.name : std::string(row.group) + ' ' + row.name;
    });
    row.setUp(line, command);
    return line;
}

} // namespace

void AddConsoleCommands(CLI::App& app, ConsoleCommand& command, Place place)
{
    app.allow_extras(); // CheckParsedCommand reports left-over words, in our own terms
    app.fallthrough();
    app.require_subcommand(0, 1); // a further name of a command is a word like any other
    app.formatter(std::make_shared<UsageFormatter>());
    for (const Row& row : kRows) {
        if ((row.places & place) == 0) {
            continue;
        }
        CLI::App& group = GroupOf(app, row.group);
        AddCommand(group, command, row)
            .footer((row.places == kPlaceCommandLine ? ShellCommands() : "") +
                    "Example:" + Example(row, place));
        if (*row.group != '\0') {
            group.footer((group.get_footer().empty() ? "Examples:" : group.get_footer()) +
                         Example(row, place));
        }
    }
}

void CheckParsedCommand(const CLI::App& app)
{
    const CLI::App* command = &app;
    std::string path;
    while (!command->get_subcommands().empty()) {
        command = command->get_subcommands().front();
        path += command->get_name() + ' ';
    }
    const bool complete =
        command != &app && command->get_subcommands([](const CLI::App*) { return true; }).empty();
    const auto left = app.remaining(true);
    if (!left.empty() && left.front().starts_with('-')) {
        throw UsageError(tools::UnknownOption(*command, left.front()));
    }
    const auto names = NamesOf(app);
    if (!left.empty() && complete && std::find(names.begin(), names.end(), left.front()) != names.end()) {
        throw UsageError("one command at a time, '" + left.front() + "' begins another");
    }
    if (!left.empty() && complete) {
        // Without an option's value: it may be a password.
        throw UsageError("unexpected argument '" + left.front().substr(0, left.front().find('=')) + "'");
    }
    if (!left.empty()) {
        throw UsageError("unknown command '" + path + left.front() + "'" +
                         Remedy(*command, path, left.front()));
    }
    if (!complete) {
        throw UsageError((path.empty() ? "no command given" : "'" + path + "...' needs one more word") +
                         Choices(*command));
    }
}

namespace {

// The command named last, and its words.
std::pair<const CLI::App*, std::string> Deepest(const CLI::App& app)
{
    const CLI::App* command = &app;
    std::string path;
    while (!command->get_subcommands().empty()) {
        command = command->get_subcommands().front();
        path += (path.empty() ? "" : " ") + command->get_name();
    }
    return {command, path};
}

// The ids of windows among the words of the command.
std::vector<std::string> WindowsOf(const CLI::App& command)
{
    std::vector<std::string> windows;
    std::size_t place = 0;
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& word : option->get_positional() ? option->results() : Words()) {
            if (ValueAt(command, place++) == "WINDOW") {
                windows.push_back(word);
            }
        }
    }
    return windows;
}

// The row of the command that a script's line begins with; null when there is none.
const Row* RowOf(const Words& words)
{
    const auto* found = std::find_if(std::begin(kRows), std::end(kRows), [&words](const Row& row) {
        const bool inGroup = *row.group != '\0';
        return (row.places & kPlaceScript) != 0 && words.size() > (inGroup ? 1 : 0) &&
               (!inGroup || words[0] == row.group) && words[inGroup ? 1 : 0] == row.name;
    });
    return found == std::end(kRows) ? nullptr : found;
}

// Parses words as one of all commands, or, where there is a row, as that one only.
ConsoleCommand ParseLine(const Words& words, Place place, const Row* only = nullptr)
{
    ConsoleCommand command;
    CLI::App app;
    if (place == kPlaceScript) {
        app.set_help_flag();
    }
    if (only != nullptr) {
        app.allow_extras()->fallthrough();
        AddCommand(GroupOf(app, only->group), command, *only);
    } else {
        AddConsoleCommands(app, command, place);
    }
    try {
        // The parser takes its words in reverse order.
        app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
    } catch (const CLI::CallForHelp&) {
        command.kind = ConsoleCommand::Kind::Help;
        command.help = HelpOf(app);
        return command;
    } catch (const CLI::Error& error) {
        RefuseLine(app, tools::OptionFault(error));
    } catch (const UsageError& error) {
        RefuseLine(app, error.what());
    }
    CheckParsedCommand(app);
    command.typed = TypedCommand(app);
    const auto windows = WindowsOf(*Deepest(app).first);
    command.windows.insert(command.windows.end(), windows.begin(), windows.end()); // a wall file has others
    return command;
}

} // namespace

// A mistyped option may be all that is wrong when another one is missing, or its value is taken for a word.
void RefuseLine(const CLI::App& app, const std::string& fault)
{
    const auto left = app.remaining(true);
    const auto option =
        std::find_if(left.begin(), left.end(), [](const std::string& word) { return word.starts_with('-'); });
    throw UsageError(option == left.end() ? fault : tools::UnknownOption(*Deepest(app).first, *option));
}

std::string HelpOf(const CLI::App& app)
{
    if (const auto left = app.remaining(true); !left.empty() && !left.front().starts_with('-')) {
        CheckParsedCommand(app); // which reports that there is no such command
    }
    const auto [command, path] = Deepest(app);
    std::string before = command == &app ? "" : app.get_name();
    if (const std::size_t last = path.rfind(' '); last != std::string::npos) {
        before += (before.empty() ? "" : " ") + path.substr(0, last);
    }
    return command->help(before);
}

std::string ValueAt(const CLI::App& command, std::size_t place)
{
    const Row* row = RowOf(command);
    std::istringstream text(row == nullptr ? "" : row->words);
    std::vector<std::string> values{std::istream_iterator<std::string>(text), {}};
    if (!values.empty() && values.back() == "...") {
        values.pop_back();
        place %= values.size();
    }
    if (place >= values.size()) {
        return "";
    }
    std::string value = values[place];
    std::erase_if(value, [](char c) { return c == '[' || c == ']'; });
    return value;
}

ConsoleCommand ParseScriptLine(const Words& words)
{
    // A parser of one command is built much faster than one of all, but only that knows all that can be
    // wrong.
    if (const Row* row = RowOf(words)) {
        try {
            return ParseLine(words, kPlaceScript, row);
        } catch (const UsageError&) { // told below, in better words
        }
    }
    return ParseLine(words, kPlaceScript);
}

ConsoleCommand ParseShellLine(std::vector<std::string> words)
{
    if (!words.empty() && words.front() == "help") {
        words.erase(words.begin());
        words.emplace_back("--help");
    }
    return ParseLine(words, kPlaceShell);
}

} // namespace standin_host
