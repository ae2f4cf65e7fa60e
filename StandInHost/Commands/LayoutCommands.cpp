#include "Commands/CommandFamilies.h"
#include "Commands/Records/AnswerForms.h"
#include "TvwallProtocol.h"

namespace standin_host {

using namespace ORVA_NET_PROTOCOL;

void SetUpLayoutGet(CLI::App& app, SConsoleCommand& command)
{
    app.callback([&command] { Request(command, KEST_CMD_TVWALL_DECODE_GET_WALL_LAYOUT, {}, kLayoutForm); });
}

void SetUpLayoutSet(CLI::App& app, SConsoleCommand& command)
{
    const auto pRows = AddWord(app, "ROWS", "rows of screens");
    const auto pColumns = AddWord(app, "COLUMNS", "screens in a row");
    app.callback([&command, pRows, pColumns] {
        Request(command, KEST_CMD_TVWALL_DECODE_SET_WALL_LAYOUT,
                LayoutRecord(Unsigned(*pRows, "ROWS"), Unsigned(*pColumns, "COLUMNS"), {}), kEmptyForm);
        command.strTitle += ' ' + *pRows + ' ' + *pColumns;
    });
}

void SetUpLayoutBind(CLI::App& app, SConsoleCommand& command)
{
    const auto pWords = AddWords(app, "SCREEN",
                                 "ID X Y: a decoder output and its column and row, from 0; repeat for "
                                 "several screens");
    app.callback([&command, pWords] {
        std::vector<SScreen> screens;
        for (const WordGroup& group : Groups(*pWords, 3, "each screen takes three numbers: ID X Y")) {
            screens.push_back(
                {Unsigned(group[0], "the output's id"), Unsigned(group[1], "X"), Unsigned(group[2], "Y")});
        }
        Request(command, KEST_CMD_TVWALL_DECODE_DO_BIND_WALL, LayoutRecord(0, 0, screens), kEmptyForm);
        command.strTitle += Join(*pWords);
    });
}

void SetUpLayoutUnbind(CLI::App& app, SConsoleCommand& command)
{
    const auto pWords =
        AddWords(app, "SCREEN", "X Y: a screen's column and row, from 0; repeat for several screens");
    app.callback([&command, pWords] {
        std::vector<SScreen> screens;
        for (const WordGroup& group : Groups(*pWords, 2, "each screen takes two numbers: X Y")) {
            screens.push_back({0, Unsigned(group[0], "X"), Unsigned(group[1], "Y")});
        }
        Request(command, KEST_CMD_TVWALL_DECODE_DO_UNBIND_WALL, LayoutRecord(0, 0, screens), kEmptyForm);
        command.strTitle += Join(*pWords);
    });
}

} // namespace standin_host
