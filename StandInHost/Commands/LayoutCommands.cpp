#include "Commands/CommandFamilies.h"
#include "Commands/Records/AnswerForms.h"
#include "TvwallProtocol.h"

namespace standin_host {

using namespace ORVA_NET_PROTOCOL;

namespace {

// Without an output's id where screens are freed.
Fields ScreenArgs(const std::vector<Screen>& screens, bool bound)
{
    Fields list = Fields::array();
    for (const Screen& screen : screens) {
        Fields item = bound ? Fields{{"id", screen.id}} : Fields::object();
        item["x"] = screen.x;
        item["y"] = screen.y;
        list.push_back(std::move(item));
    }
    return list;
}

} // namespace

void SetUpLayoutGet(CLI::App& app, ConsoleCommand& command)
{
    app.callback([&command] { Request(command, KEST_CMD_TVWALL_DECODE_GET_WALL_LAYOUT, {}, kLayoutForm); });
}

void SetUpLayoutSet(CLI::App& app, ConsoleCommand& command)
{
    const auto rows = AddWord(app, "ROWS", "rows of screens");
    const auto columns = AddWord(app, "COLUMNS", "screens in a row");
    app.callback([&command, rows, columns] {
        Request(command, KEST_CMD_TVWALL_DECODE_SET_WALL_LAYOUT,
                LayoutRecord(Unsigned(*rows, "ROWS"), Unsigned(*columns, "COLUMNS"), {}), kEmptyForm);
        command.args = {{"rows", Unsigned(*rows, "ROWS")}, {"columns", Unsigned(*columns, "COLUMNS")}};
        command.title += ' ' + *rows + ' ' + *columns;
    });
}

void SetUpLayoutBind(CLI::App& app, ConsoleCommand& command)
{
    const auto words = AddWords(app, "SCREEN",
                                "OUTPUT X Y: an output of the decoder, and column and row of its screen, "
                                "from 0; repeat for several screens");
    app.callback([&command, words] {
        std::vector<Screen> screens;
        for (const WordGroup& group : Groups(*words, 3, "each screen takes three numbers: OUTPUT X Y")) {
            screens.push_back(
                {Unsigned(group[0], "the output's id"), Unsigned(group[1], "X"), Unsigned(group[2], "Y")});
        }
        command.args["screens"] = ScreenArgs(screens, true);
        Request(command, KEST_CMD_TVWALL_DECODE_DO_BIND_WALL, LayoutRecord(0, 0, screens), kEmptyForm);
        command.title += Join(*words);
    });
}

void SetUpLayoutUnbind(CLI::App& app, ConsoleCommand& command)
{
    const auto words =
        AddWords(app, "SCREEN", "X Y: a screen's column and row, from 0; repeat for several screens");
    app.callback([&command, words] {
        std::vector<Screen> screens;
        for (const WordGroup& group : Groups(*words, 2, "each screen takes two numbers: X Y")) {
            screens.push_back({0, Unsigned(group[0], "X"), Unsigned(group[1], "Y")});
        }
        command.args["screens"] = ScreenArgs(screens, false);
        Request(command, KEST_CMD_TVWALL_DECODE_DO_UNBIND_WALL, LayoutRecord(0, 0, screens), kEmptyForm);
        command.title += Join(*words);
    });
}

} // namespace standin_host
