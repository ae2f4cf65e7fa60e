#pragma once
// The families of console commands. Each function adds one command's arguments and, in a callback, builds its
// request to the plug-in.

#include <memory>
#include <span>

#include <CLI/CLI.hpp>

#include "Commands/ParsedCommand.h"
#include "Commands/Records/AnswerForms.h"
#include "Commands/Records/CommandWords.h"

namespace standin_host {

using CommandSetup = void(CLI::App& app, ConsoleCommand& command);

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
CommandSetup SetUpProfileList, SetUpProfileAdd, SetUpProfileRemove, SetUpConnect;

// --- shared by the families ---

// A required list of words, and a single one, under shared ownership.
std::shared_ptr<Words> AddWords(CLI::App& app, const char* name, const char* help);
std::shared_ptr<std::string> AddWord(CLI::App& app, const char* name, const char* help);

// A request for a command that is not an option.
void Request(ConsoleCommand& command, unsigned int cmdID, Record record, const AnswerForm& form);
// A request whose record follows an option head.
void RequestOption(ConsoleCommand& command, unsigned int cmdID, uint32_t optType, const Record& record,
                   const AnswerForm& form = kDoneForm);

// A command whose words name sub-windows, one group of words for each.
struct SubWindowCommand {
    std::span<const Field> fields; // window, index and at most two more
    const char* group;             // the fields' names: "WINDOW INDEX CHANNEL"
    unsigned int cmdID;
    uint32_t optType;
    Record (*makeRecord)(const std::vector<SubWindows>& windows);
    const char* keys[2] = {}; // names of the arguments after window and index
};

void SetUpSubWindows(CLI::App& app, ConsoleCommand& command, const SubWindowCommand& subWindows);

} // namespace standin_host
