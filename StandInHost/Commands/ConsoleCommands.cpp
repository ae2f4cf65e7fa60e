#include "Commands/ConsoleCommands.h"

#include <algorithm>
#include <utility>

#include <CLI/CLI.hpp>

#include "Base/ExitStatus.h"
#include "Commands/CommandFamilies.h"

namespace standin_host {

namespace {

// A command without arguments that the program itself carries out.
template <SConsoleCommand::EKind kind>
void SetUpKind(CLI::App& app, SConsoleCommand& command)
{
    app.callback([&command] { command.kind = kind; });
}
using EKind = SConsoleCommand::EKind;

struct SRow {
    const char* szGroup; // first word of a command of two words, else empty
    const char* szName;
    const char* szHelp;
    const char* szExample;
    CommandSetup* pSetUp;
    unsigned nPlaces = PLACE_COMMAND_LINE | PLACE_SCRIPT | PLACE_SHELL;
};

constexpr SRow s_rows[] = {
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
     PLACE_COMMAND_LINE | PLACE_SHELL},
    {"", "shell", "take commands from the terminal, with history and completion", "shell",
     SetUpKind<EKind::Shell>, PLACE_COMMAND_LINE},
    {"", "raw", "queue any host command with any payload", "raw 0x50006", SetUpRaw},
    {"", "connect", "connect and log in anew", "connect", SetUpKind<EKind::Connect>, PLACE_SHELL},
    {"", "disconnect", "end the connection; the next command opens another", "disconnect",
     SetUpKind<EKind::Disconnect>, PLACE_SHELL},
    {"", "codes", "say what the failure codes mean and what to look at", "codes", SetUpKind<EKind::Codes>,
     PLACE_SHELL},
    // Stands here to be seen and completed; the words behind it are parsed as the command that they name.
    {"", "help", "show the commands, or what one of them takes", "help window create", SetUpKind<EKind::Help>,
     PLACE_SHELL},
    {"", "exit", "leave the shell, as Ctrl-D does", "exit", SetUpKind<EKind::Exit>, PLACE_SHELL},
};

std::string Example(const SRow& row, EPlace place)
{
    const char* szProgram =
        place == PLACE_COMMAND_LINE ? "tvwall-host --decoder 192.0.2.7:9000 --user admin " : "";
    return std::string("\n  ") + szProgram + row.szExample;
}

CLI::App& GroupOf(CLI::App& app, const std::string& strGroup)
{
    if (strGroup.empty()) {
        return app;
    }
    const auto groups =
        app.get_subcommands([&](const CLI::App* pApp) { return pApp->get_name() == strGroup; });
    if (!groups.empty()) {
        return *groups.front();
    }
    return *app.add_subcommand(strGroup, strGroup + " commands");
}

// Where to find what could stand there; of a group its few commands themselves.
std::string Choices(const CLI::App& app)
{
    const auto commands = app.get_subcommands([](const CLI::App*) { return true; });
    if (app.get_parent() == nullptr) {
        const bool bHelp = std::any_of(commands.begin(), commands.end(),
                                       [](const CLI::App* pApp) { return pApp->get_name() == "help"; });
        return bHelp ? "; see help" : "; see tvwall-host --help";
    }
    std::string strChoices;
    for (const CLI::App* pApp : commands) {
        strChoices += (strChoices.empty() ? "; there is " : ", ") + pApp->get_name();
    }
    return strChoices;
}

} // namespace

void AddConsoleCommands(CLI::App& app, SConsoleCommand& command, EPlace place)
{
    app.allow_extras(); // left-over words are reported by CheckParsedCommand, in our words
    app.fallthrough();
    for (const SRow& row : s_rows) {
        if ((row.nPlaces & place) == 0) {
            continue;
        }
        CLI::App& group = GroupOf(app, row.szGroup);
        CLI::App& line = *group.add_subcommand(row.szName, row.szHelp);
        line.footer("Example:" + Example(row, place));
        if (*row.szGroup != '\0') {
            group.footer((group.get_footer().empty() ? "Examples:" : group.get_footer()) +
                         Example(row, place));
        }
        line.preparse_callback([&command, &row](std::size_t) {
            command.strTitle =
                *row.szGroup == '\0' ? row.szName : std::string(row.szGroup) + ' ' + row.szName;
        });
        row.pSetUp(line, command);
    }
}

void CheckParsedCommand(const CLI::App& app)
{
    const CLI::App* pApp = &app;
    std::string strPath;
    while (!pApp->get_subcommands().empty()) {
        const auto commands = pApp->get_subcommands();
        if (commands.size() > 1) {
            throw CUsageError("one command at a time, '" + commands[1]->get_name() + "' begins another");
        }
        pApp = commands.front();
        strPath += pApp->get_name() + ' ';
    }
    const bool bComplete =
        pApp != &app && pApp->get_subcommands([](const CLI::App*) { return true; }).empty();
    const auto left = app.remaining(true);
    if (!left.empty() && (bComplete || left.front().starts_with('-'))) {
        // Without the value of an option: it may be a password.
        throw CUsageError("unexpected argument '" + left.front().substr(0, left.front().find('=')) + "'");
    }
    if (!left.empty()) {
        throw CUsageError("unknown command '" + strPath + left.front() + "'" + Choices(*pApp));
    }
    if (!bComplete) {
        throw CUsageError(
            (strPath.empty() ? "no command given" : "'" + strPath + "...' needs one more word") +
            Choices(*pApp));
    }
}

namespace {

// The command that was named last, and its words.
std::pair<const CLI::App*, std::string> Deepest(const CLI::App& app)
{
    const CLI::App* pApp = &app;
    std::string strPath;
    while (!pApp->get_subcommands().empty()) {
        pApp = pApp->get_subcommands().front();
        strPath += (strPath.empty() ? "" : " ") + pApp->get_name();
    }
    return {pApp, strPath};
}

std::string ShellHelp(const CLI::App& app)
{
    if (!app.remaining(true).empty()) {
        CheckParsedCommand(app); // which says that there is no such command
    }
    const auto [pApp, strPath] = Deepest(app);
    const std::size_t nName = strPath.rfind(' ');
    return pApp->help(nName == std::string::npos ? "" : strPath.substr(0, nName));
}

SConsoleCommand ParseLine(const std::vector<std::string>& words, EPlace place)
{
    SConsoleCommand command;
    CLI::App app;
    if (place == PLACE_SCRIPT) {
        app.set_help_flag();
    }
    AddConsoleCommands(app, command, place);
    try {
        // The parser takes its words from the back.
        app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
    } catch (const CLI::CallForHelp&) {
        command.kind = SConsoleCommand::EKind::Help;
        command.strHelp = ShellHelp(app);
        return command;
    } catch (const CLI::Error& error) {
        throw CUsageError(error.what());
    }
    CheckParsedCommand(app);
    return command;
}

} // namespace

SConsoleCommand ParseScriptLine(const std::vector<std::string>& words)
{
    return ParseLine(words, PLACE_SCRIPT);
}

SConsoleCommand ParseShellLine(std::vector<std::string> words)
{
    if (!words.empty() && words.front() == "help") {
        words.erase(words.begin());
        words.emplace_back("--help");
    }
    return ParseLine(words, PLACE_SHELL);
}

} // namespace standin_host
