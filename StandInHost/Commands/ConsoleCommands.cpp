#include "Commands/ConsoleCommands.h"

#include <algorithm>
#include <utility>

#include <CLI/CLI.hpp>

#include "Base/ExitStatus.h"
#include "Base/Nearest.h"
#include "Commands/CommandFamilies.h"
#include "Commands/TypedCommand.h"

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
    const char* help;
    const char* example;
    CommandSetup* setUp;
    unsigned places = kPlaceCommandLine | kPlaceScript | kPlaceShell;
};

constexpr Row kRows[] = {
    {"", "login", "log in and say who answered", "login", SetUpLogin},
    {"", "logout", "log out; the decoder then refuses what follows", "logout", SetUpLogout},
    {"", "info", "read the decoder's name, model and versions", "info", SetUpInfo},
    {"", "config", "read the decoder's basic configuration", "config", SetUpConfig},
    {"layout", "get", "read the grid of screens and what is bound to them", "layout get", SetUpLayoutGet},
    {"layout", "set", "set the size of the grid", "layout set 2 3", SetUpLayoutSet},
    {"layout", "bind", "bind decoder outputs to screens", "layout bind 1 0 0 2 1 0", SetUpLayoutBind},
    {"layout", "unbind", "free screens", "layout unbind 0 0 1 0", SetUpLayoutUnbind},
    {"window", "create", "put windows on the wall", "window create 1 0 0 960 540 --mode 4 --osd 1,2,3,4",
     SetUpWindowCreate},
    {"window", "move", "move or resize windows", "window move 1 -10 0 960 540", SetUpWindowMove},
    {"window", "split", "split windows anew into sub-windows", "window split 1 0 0 960 540 --mode 9",
     SetUpWindowSplit},
    {"window", "raise", "put a window in front of the others", "window raise 1", SetUpWindowRaise},
    {"window", "delete", "take windows off the wall", "window delete 1 2", SetUpWindowDelete},
    {"wall", "apply", "put a whole wall, windows and sources, in place of what is there",
     "wall apply wall.json", SetUpWallApply},
    {"wall", "clear", "take every window off the wall", "wall clear", SetUpWallClear},
    {"media", "play", "show a source in a sub-window",
     "media play 1 0 192.0.2.10:554 --channel 3 --source-user viewer --source-password-file secret",
     SetUpMediaPlay},
    {"media", "stop", "end what sub-windows show", "media stop 1 0 1 1", SetUpMediaStop},
    {"", "playback", "control recorded video in sub-windows", "playback 1 0 2 4", SetUpPlayback},
    {"audio", "play", "switch the sound of sub-windows on", "audio play 1 0 3", SetUpAudioPlay},
    {"audio", "stop", "switch the sound of sub-windows off", "audio stop 1 0", SetUpAudioStop},
    {"audio", "get", "read which sub-windows carry sound", "audio get", SetUpAudioGet},
    {"group", "add", "add a channel group", "group add 7 --name doors --channels 1,2,3 --interval 10",
     SetUpGroupAdd},
    {"group", "set", "change a channel group", "group set 7 --name doors --channels 1,2 --interval 20",
     SetUpGroupSet},
    {"group", "delete", "delete channel groups", "group delete 7 8", SetUpGroupDelete},
    {"group", "get", "read channel groups", "group get 7", SetUpGroupGet},
    {"polling", "start", "cycle through a channel group in sub-windows", "polling start 1 0 7",
     SetUpPollingStart},
    {"polling", "stop", "end polling in sub-windows", "polling stop 1 0", SetUpPollingStop},
    {"", "border", "draw or hide the borders of sub-windows", "border 1 0 on 1 1 off", SetUpBorder},
    {"", "zoom", "let a sub-window fill its window", "zoom 1 0 on", SetUpZoom},
    {"window-config", "get", "read the wall's display switches", "window-config get", SetUpWindowConfigGet},
    {"window-config", "set", "set the wall's display switches", "window-config set on off",
     SetUpWindowConfigSet},
    {"", "watch", "print the decoder's notifications until Ctrl-C", "watch", SetUpWatch},
    {"", "script", "run one command a line, with one login for all", "script evening.txt", SetUpScript,
     kPlaceCommandLine | kPlaceShell},
    {"", "shell", "take commands from the terminal, with history and completion", "shell",
     SetUpKind<Kind::Shell>, kPlaceCommandLine},
    {"", "raw", "queue any host command with any payload", "raw 0x50006", SetUpRaw},
    {"", "connect", "connect and log in anew", "connect", SetUpKind<Kind::Connect>, kPlaceShell},
    {"", "disconnect", "end the connection; the next command opens another", "disconnect",
     SetUpKind<Kind::Disconnect>, kPlaceShell},
    {"", "codes", "say what the failure codes mean and what to look at", "codes", SetUpKind<Kind::Codes>,
     kPlaceShell},
    // Here only to be listed and completed; the words after it are parsed as the command that they name.
    {"", "help", "show the commands, or what one of them takes", "help window create", SetUpKind<Kind::Help>,
     kPlaceShell},
    {"", "exit", "leave the shell, as Ctrl-D does", "exit", SetUpKind<Kind::Exit>, kPlaceShell},
};

std::string Example(const Row& row, Place place)
{
    const char* program =
        place == kPlaceCommandLine ? "tvwall-host --decoder 192.0.2.7:9000 --user admin " : "";
    return std::string("\n  ") + program + row.example;
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
        const bool help = std::find(names.begin(), names.end(), "help") != names.end();
        return help ? "; see help" : "; see tvwall-host --help";
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
    const std::string nearest = Nearest(word, NamesOf(commands));
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
    for (const Row& row : kRows) {
        if ((row.places & place) == 0) {
            continue;
        }
        CLI::App& group = GroupOf(app, row.group);
        AddCommand(group, command, row).footer("Example:" + Example(row, place));
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
        const auto commands = command->get_subcommands();
        if (commands.size() > 1) {
            throw UsageError("one command at a time, '" + commands[1]->get_name() + "' begins another");
        }
        command = commands.front();
        path += command->get_name() + ' ';
    }
    const bool complete =
        command != &app && command->get_subcommands([](const CLI::App*) { return true; }).empty();
    const auto left = app.remaining(true);
    if (!left.empty() && (complete || left.front().starts_with('-'))) {
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

std::string ShellHelp(const CLI::App& app)
{
    if (!app.remaining(true).empty()) {
        CheckParsedCommand(app); // which reports that there is no such command
    }
    const auto [command, path] = Deepest(app);
    const std::size_t name = path.rfind(' ');
    return command->help(name == std::string::npos ? "" : path.substr(0, name));
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
        command.help = ShellHelp(app);
        return command;
    } catch (const CLI::Error& error) {
        throw UsageError(error.what());
    }
    CheckParsedCommand(app);
    command.typed = TypedCommand(app);
    return command;
}

} // namespace

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
