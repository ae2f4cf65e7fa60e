#include "Commands/CommandFamilies.h"
#include "Commands/Records/AnswerForms.h"
#include "TvwallProtocol.h"

namespace standin_host {

using namespace ORVA_NET_PROTOCOL;
using namespace ORVA2_DECODER_TVW;

void SetUpBorder(CLI::App& app, ConsoleCommand& command)
{
    static constexpr Field kFields[] = {FieldOf<int16_t>("the window id"),
                                        FieldOf<int16_t>("the sub-window index"), SwitchOf("the border")};
    SetUpSubWindows(app, command,
                    {kFields,
                     "WINDOW INDEX on|off",
                     KEST_CMD_TVWALL_DECODE_SAVE_CONFIG,
                     TVWALL_DECODE_DRAWBODER,
                     BorderRecord,
                     {"border"}});
}

void SetUpZoom(CLI::App& app, ConsoleCommand& command)
{
    const auto window = AddWord(app, "WINDOW", "window id");
    const auto indexWord = AddWord(app, "INDEX", "index of the sub-window that fills its window");
    const auto zoom = AddWord(app, "ZOOM", "on, or off to show all sub-windows again");
    app.callback([&command, window, indexWord, zoom] {
        const auto index =
            static_cast<uint16_t>(Number(*indexWord, FieldOf<uint16_t>("the sub-window index")));
        RequestOption(command, KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_ZOOMOUT,
                      ZoomRecord(Unsigned(*window, "the window id"), index, OnOrOff(*zoom, "ZOOM")));
        command.args = {
            {"window", Unsigned(*window, "the window id")}, {"index", index}, {"zoom", *zoom == "on"}};
        command.title += Join({*window, *indexWord, *zoom});
    });
}

void SetUpWindowConfigGet(CLI::App& app, ConsoleCommand& command)
{
    app.callback([&command] {
        RequestOption(command, KEST_CMD_TVWALL_DECODE_GET_CONFIG, TVWALL_DECODE_GET_WINDOW_CONFIG, {},
                      kWindowConfigForm);
    });
}

void SetUpWindowConfigSet(CLI::App& app, ConsoleCommand& command)
{
    const auto borders = AddWord(app, "BORDERS", "on or off: borders around the windows");
    const auto windowIds = AddWord(app, "IDS", "on or off: window ids on the wall");
    app.callback([&command, borders, windowIds] {
        RequestOption(command, KEST_CMD_TVWALL_DECODE_SAVE_CONFIG, TVWALL_DECODE_SET_WINDOW_CONFIG,
                      WindowConfigRecord(OnOrOff(*borders, "BORDERS"), OnOrOff(*windowIds, "IDS")),
                      kWindowConfigForm);
        command.args = {{"borders", *borders == "on"}, {"windowIds", *windowIds == "on"}};
        command.title += Join({*borders, *windowIds});
    });
}

} // namespace standin_host
