#include "ConsoleCommands.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>
#include <utility>

#include <CLI/CLI.hpp>

#include "ExitStatus.h"
#include "Payloads.h"
#include "Text.h"
#include "TvwallProtocol.h"

namespace standin_host {

namespace {

using namespace ORVA_NET_PROTOCOL;
using namespace ORVA2_DECODER_TVW;
using EKind = SConsoleCommand::EKind;

// The sub-windows of one window; what is beyond needs a raw command.
constexpr int64_t kMaxMode = 4096;

uint32_t Unsigned(const std::string& strText, const char* szWhat)
{
    const auto nValue = ParseNumber(strText, 0, std::numeric_limits<uint32_t>::max());
    if (!nValue) {
        throw CUsageError(std::string(szWhat) + " must be a number from 0 to 4294967295, not '" + strText +
                          "'");
    }
    return static_cast<uint32_t>(*nValue);
}

int32_t Signed(const std::string& strText, const char* szWhat)
{
    const auto nValue =
        ParseNumber(strText, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max());
    if (!nValue) {
        throw CUsageError(std::string(szWhat) + " must be a number from -2147483648 to 2147483647, not '" +
                          strText + "'");
    }
    return static_cast<int32_t>(*nValue);
}

std::string Join(const std::vector<std::string>& words)
{
    std::string strText;
    for (const std::string& strWord : words) {
        strText += ' ' + strWord;
    }
    return strText;
}

std::vector<uint8_t> ReadFile(const std::string& strFile)
{
    std::ifstream file(strFile, std::ios::binary);
    std::vector<uint8_t> bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (!file) {
        throw CUsageError("cannot read the payload file " + strFile);
    }
    return bytes;
}

void Request(SConsoleCommand& command, unsigned int nCmdID, std::vector<uint8_t> payload)
{
    command.kind = EKind::Request;
    command.nCmdID = nCmdID;
    command.payload = std::move(payload);
}

// Windows on a command line: ID X Y WIDTH HEIGHT, as often as wanted.
constexpr std::size_t kWindowWords = 5;

void CheckWindowWords(const std::vector<std::string>& words)
{
    if (words.size() % kWindowWords != 0) {
        throw CUsageError("each window takes five numbers: ID X Y WIDTH HEIGHT");
    }
}

struct SWindowArguments {
    std::vector<std::string> words;
    std::string strMode = "1";
    std::vector<std::string> osdIds;
    std::string strLayer = "0";

    std::vector<SWindow> Windows() const
    {
        CheckWindowWords(words);
        const auto nMode = ParseNumber(strMode, 0, kMaxMode);
        if (!nMode) {
            throw CUsageError("--mode must be a number from 0 to 4096, not '" + strMode + "'");
        }
        if (osdIds.size() > static_cast<std::size_t>(*nMode)) {
            throw CUsageError("--osd gives more ids than --mode has sub-windows");
        }
        std::vector<uint32_t> ids(static_cast<std::size_t>(*nMode), 0);
        std::transform(osdIds.begin(), osdIds.end(), ids.begin(),
                       [](const std::string& strId) { return Unsigned(strId, "an OSD id"); });
        std::vector<SWindow> windows;
        for (auto word = words.begin(); word != words.end(); word += kWindowWords) {
            windows.push_back({Unsigned(word[0], "the window id"), Unsigned(word[1], "X"),
                               Unsigned(word[2], "Y"), Unsigned(word[3], "the width"),
                               Unsigned(word[4], "the height"), Unsigned(strLayer, "--layer"), ids});
        }
        return windows;
    }
};

// Creating and splitting take the same record; the command and option differ.
void WindowRecord(CLI::App& app, SConsoleCommand& command, unsigned int nCmdID, uint32_t nOptType,
                  bool bModeRequired)
{
    const auto pArguments = std::make_shared<SWindowArguments>();
    app.add_option("WINDOW", pArguments->words,
                   "ID X Y WIDTH HEIGHT in wall coordinates; repeat for several windows")
        ->required();
    app.add_option("--mode", pArguments->strMode, "split mode: the number of sub-windows")
        ->type_name("N")
        ->capture_default_str()
        ->required(bModeRequired);
    app.add_option("--osd", pArguments->osdIds,
                   "on-screen-display ids of the sub-windows in order, ID,ID,... "
                   "(the rest get 0)")
        ->type_name("ID,...")
        ->delimiter(',')
        ->allow_extra_args(false);
    app.add_option("--layer", pArguments->strLayer, "layer id")->type_name("N")->capture_default_str();
    app.callback([&command, pArguments, nCmdID, nOptType] {
        Request(command, nCmdID, OptionPayload(nOptType, CreateRecord(pArguments->Windows())));
        command.strTitle += Join(pArguments->words) + " mode " + pArguments->strMode;
    });
}

void WindowCreate(CLI::App& app, SConsoleCommand& command)
{
    WindowRecord(app, command, KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_CREATE_CANVAS, false);
}

void WindowSplit(CLI::App& app, SConsoleCommand& command)
{
    WindowRecord(app, command, KEST_CMD_TVWALL_DECODE_SAVE_CONFIG, TVWALL_DECODE_SET_DECODERFRAME, true);
}

void WindowMove(CLI::App& app, SConsoleCommand& command)
{
    const auto pWords = std::make_shared<std::vector<std::string>>();
    app.add_option("WINDOW", *pWords,
                   "ID X Y WIDTH HEIGHT, X and Y may be negative; repeat for several windows")
        ->required();
    app.callback([&command, pWords] {
        CheckWindowWords(*pWords);
        std::vector<SWindowMove> moves;
        for (auto word = pWords->begin(); word != pWords->end(); word += kWindowWords) {
            moves.push_back({Signed(word[0], "the window id"), Signed(word[1], "X"), Signed(word[2], "Y"),
                             Signed(word[3], "the width"), Signed(word[4], "the height")});
        }
        Request(command, KEST_CMD_TVWALL_DECODE_OPTION,
                OptionPayload(TVWALL_DECODE_MODIFY_CANVAS, MoveRecord(moves)));
        command.strTitle += Join(*pWords);
    });
}

void WindowRaise(CLI::App& app, SConsoleCommand& command)
{
    const auto pId = std::make_shared<std::string>();
    app.add_option("ID", *pId, "window id")->type_name("")->required();
    app.callback([&command, pId] {
        Request(command, KEST_CMD_TVWALL_DECODE_OPTION,
                OptionPayload(TVWALL_DECODE_TOP_CANVAS, RaiseRecord(Unsigned(*pId, "the window id"))));
        command.strTitle += ' ' + *pId;
    });
}

void WindowDelete(CLI::App& app, SConsoleCommand& command)
{
    const auto pIds = std::make_shared<std::vector<std::string>>();
    app.add_option("ID", *pIds, "window ids")->type_name("")->required();
    app.callback([&command, pIds] {
        std::vector<uint32_t> ids;
        for (const std::string& strId : *pIds) {
            ids.push_back(Unsigned(strId, "the window id"));
        }
        Request(command, KEST_CMD_TVWALL_DECODE_OPTION,
                OptionPayload(TVWALL_DECODE_DEL_CANVAS, DeleteRecord(ids)));
        command.strTitle += Join(*pIds);
    });
}

void WallClear(CLI::App& app, SConsoleCommand& command)
{
    app.callback([&command] {
        Request(command, KEST_CMD_TVWALL_DECODE_SAVE_CONFIG, OptionPayload(TVWALL_DECODE_CLEAR_WALL, {}));
    });
}

void Login(CLI::App& app, SConsoleCommand& command)
{
    app.callback([&command] {
        command.kind = EKind::Login;
        command.nCmdID = KEST_CMD_REQUEST_LOGIN;
    });
}

void Watch(CLI::App& app, SConsoleCommand& command)
{
    const auto pCount = std::make_shared<std::string>();
    app.add_option("--count", *pCount, "end after so many notifications")->type_name("N");
    app.callback([&command, pCount] {
        command.kind = EKind::Watch;
        if (!pCount->empty()) {
            command.nNotifications = Unsigned(*pCount, "--count");
        }
    });
}

void Script(CLI::App& app, SConsoleCommand& command)
{
    app.add_option("FILE", command.strScriptFile, "script file; - is standard input")->required();
    app.callback([&command] { command.kind = EKind::Script; });
}

struct SRawArguments {
    std::string strId;
    std::string strOption;
    std::string strFile;
    std::string strHex;
    bool bNoReply = false;
};

void Raw(CLI::App& app, SConsoleCommand& command)
{
    const auto pArguments = std::make_shared<SRawArguments>();
    app.add_option("ID", pArguments->strId, "host command id, decimal or 0x...")->type_name("")->required();
    app.add_option("--option", pArguments->strOption,
                   "put the option head with this type in front of the payload")
        ->type_name("TYPE");
    auto* pFile =
        app.add_option("--payload", pArguments->strFile, "file with the payload bytes")->type_name("FILE");
    app.add_option("--hex", pArguments->strHex, "payload bytes as hexadecimal digits")
        ->type_name("HEX")
        ->excludes(pFile);
    app.add_flag("--no-reply", pArguments->bNoReply, "queue a command that wants no answer");
    app.callback([&command, pArguments] {
        std::vector<uint8_t> payload;
        if (!pArguments->strFile.empty()) {
            payload = ReadFile(pArguments->strFile);
        } else if (auto bytes = ParseHex(pArguments->strHex)) {
            payload = std::move(*bytes);
        } else {
            throw CUsageError("--hex takes pairs of hexadecimal digits");
        }
        if (!pArguments->strOption.empty()) {
            payload = OptionPayload(Unsigned(pArguments->strOption, "--option"), payload);
        }
        Request(command, Unsigned(pArguments->strId, "the command id"), std::move(payload));
        command.bHasReply = !pArguments->bNoReply;
        command.strTitle += ' ' + pArguments->strId;
        if (!pArguments->strOption.empty()) {
            command.strTitle += " option " + pArguments->strOption;
        }
    });
}

struct SRow {
    const char* szGroup; // first word of a command of two words, else empty
    const char* szName;
    const char* szHelp;
    const char* szExample;
    void (*pConfigure)(CLI::App& app, SConsoleCommand& command);
};

constexpr SRow s_rows[] = {
    {"", "login", "log in and say who answered", "login", Login},
    {"window", "create", "put windows on the wall", "window create 1 0 0 960 540 --mode 4 --osd 1,2,3,4",
     WindowCreate},
    {"window", "move", "move or resize windows", "window move 1 -10 0 960 540", WindowMove},
    {"window", "split", "split windows anew into sub-windows", "window split 1 0 0 960 540 --mode 9",
     WindowSplit},
    {"window", "raise", "put a window in front of the others", "window raise 1", WindowRaise},
    {"window", "delete", "take windows off the wall", "window delete 1 2", WindowDelete},
    {"wall", "clear", "take every window off the wall", "wall clear", WallClear},
    {"", "watch", "print the decoder's notifications until Ctrl-C", "watch", Watch},
    {"", "script", "run one command a line, with one login for all", "script evening.txt", Script},
    {"", "raw", "queue any host command with any payload", "raw 0x50001 --option 0x60011", Raw},
};

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

} // namespace

void AddConsoleCommands(CLI::App& app, SConsoleCommand& command, bool bInScript)
{
    app.allow_extras(); // left-over words are reported by CheckParsedCommand, in our words
    app.fallthrough();
    for (const SRow& row : s_rows) {
        if (bInScript && row.pConfigure == Script) {
            continue;
        }
        CLI::App& group = GroupOf(app, row.szGroup);
        CLI::App& line = *group.add_subcommand(row.szName, row.szHelp);
        line.footer(std::string("Example:\n  tvwall-host --decoder 192.0.2.7:9000 --user admin ") +
                    row.szExample);
        line.preparse_callback([&command, &row](std::size_t) {
            command.strTitle =
                *row.szGroup == '\0' ? row.szName : std::string(row.szGroup) + ' ' + row.szName;
        });
        row.pConfigure(line, command);
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
        throw CUsageError("unknown command '" + strPath + left.front() + "'");
    }
    if (!bComplete) {
        throw CUsageError(strPath.empty() ? "no command given" : "'" + strPath + "...' needs one more word");
    }
}

SConsoleCommand ParseScriptLine(const std::vector<std::string>& words)
{
    SConsoleCommand command;
    CLI::App app;
    app.set_help_flag();
    AddConsoleCommands(app, command, true);
    try {
        // The parser takes its words from the back.
        app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
    } catch (const CLI::Error& error) {
        throw CUsageError(error.what());
    }
    CheckParsedCommand(app);
    return command;
}

} // namespace standin_host
