#pragma once
// The families of console commands. Each function gives one command its arguments and says, in a callback,
// what it asks of the plug-in.

#include <memory>
#include <span>

#include <CLI/CLI.hpp>

#include "Commands/ParsedCommand.h"
#include "Commands/Records/AnswerForms.h"
#include "Commands/Records/CommandWords.h"

namespace standin_host {

using CommandSetup = void(CLI::App& app, SConsoleCommand& command);

CommandSetup SetUpLogin, SetUpLogout, SetUpInfo, SetUpConfig;
CommandSetup SetUpLayoutGet, SetUpLayoutSet, SetUpLayoutBind, SetUpLayoutUnbind;
CommandSetup SetUpWindowCreate, SetUpWindowMove, SetUpWindowSplit, SetUpWindowRaise, SetUpWindowDelete;
CommandSetup SetUpWallClear, SetUpWallApply;
CommandSetup SetUpMediaPlay, SetUpMediaStop, SetUpPlayback;
CommandSetup SetUpAudioPlay, SetUpAudioStop, SetUpAudioGet;
CommandSetup SetUpGroupAdd, SetUpGroupSet, SetUpGroupDelete, SetUpGroupGet;
CommandSetup SetUpPollingStart, SetUpPollingStop;
CommandSetup SetUpBorder, SetUpZoom, SetUpWindowConfigGet, SetUpWindowConfigSet;
CommandSetup SetUpWatch, SetUpScript, SetUpRaw;

// --- what they share ---

// A required list of words, and a single one; they live as long as somebody holds them.
std::shared_ptr<Words> AddWords(CLI::App& app, const char* szName, const char* szHelp);
std::shared_ptr<std::string> AddWord(CLI::App& app, const char* szName, const char* szHelp);

// A request for a command that is no option.
void Request(SConsoleCommand& command, unsigned int nCmdID, SRecord record, const SAnswerForm& form);
// A request whose record stands behind an option head.
void RequestOption(SConsoleCommand& command, unsigned int nCmdID, uint32_t nOptType, const SRecord& record,
                   const SAnswerForm& form = kDoneForm);

// A command whose words name sub-windows, one group of words for each.
struct SSubWindowCommand {
    std::span<const SField> fields; // window, index and at most two more
    const char* szGroup;            // their names: "WINDOW INDEX CHANNEL"
    unsigned int nCmdID;
    uint32_t nOptType;
    SRecord (*pRecord)(const std::vector<SSubWindows>& windows);
};

void SetUpSubWindows(CLI::App& app, SConsoleCommand& command, const SSubWindowCommand& subWindows);

} // namespace standin_host
