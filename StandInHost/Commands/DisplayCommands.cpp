#include "Commands/CommandFamilies.h"
#include "Commands/Records/AnswerForms.h"
#include "TvwallProtocol.h"

namespace standin_host {

using namespace ORVA_NET_PROTOCOL;
using namespace ORVA2_DECODER_TVW;

void SetUpBorder(CLI::App& app, SConsoleCommand& command)
{
    static constexpr SField s_fields[] = {FieldOf<int16_t>("the window id"),
                                          FieldOf<int16_t>("the sub-window index"), SwitchOf("the border")};
    SetUpSubWindows(app, command,
                    {s_fields, "WINDOW INDEX on|off", KEST_CMD_TVWALL_DECODE_SAVE_CONFIG,
                     TVWALL_DECODE_DRAWBODER, BorderRecord});
}

void SetUpZoom(CLI::App& app, SConsoleCommand& command)
{
    const auto pWindow = AddWord(app, "WINDOW", "window id");
    const auto pIndex = AddWord(app, "INDEX", "index of the sub-window that fills its window");
    const auto pZoom = AddWord(app, "ZOOM", "on, or off to show all sub-windows again");
    app.callback([&command, pWindow, pIndex, pZoom] {
        const auto nIndex = static_cast<uint16_t>(Number(*pIndex, FieldOf<uint16_t>("the sub-window index")));
        RequestOption(command, KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_ZOOMOUT,
                      ZoomRecord(Unsigned(*pWindow, "the window id"), nIndex, OnOrOff(*pZoom, "ZOOM")));
        command.strTitle += Join({*pWindow, *pIndex, *pZoom});
    });
}

void SetUpWindowConfigGet(CLI::App& app, SConsoleCommand& command)
{
    app.callback([&command] {
        RequestOption(command, KEST_CMD_TVWALL_DECODE_GET_CONFIG, TVWALL_DECODE_GET_WINDOW_CONFIG, {},
                      kWindowConfigForm);
    });
}

void SetUpWindowConfigSet(CLI::App& app, SConsoleCommand& command)
{
    const auto pBorders = AddWord(app, "BORDERS", "on or off: borders around the windows");
    const auto pWindowIds = AddWord(app, "IDS", "on or off: window ids on the wall");
    app.callback([&command, pBorders, pWindowIds] {
        RequestOption(command, KEST_CMD_TVWALL_DECODE_SAVE_CONFIG, TVWALL_DECODE_SET_WINDOW_CONFIG,
                      WindowConfigRecord(OnOrOff(*pBorders, "BORDERS"), OnOrOff(*pWindowIds, "IDS")),
                      kWindowConfigForm);
        command.strTitle += Join({*pBorders, *pWindowIds});
    });
}

} // namespace standin_host
