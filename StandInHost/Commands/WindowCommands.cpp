#include <algorithm>

#include "Base/ExitStatus.h"
#include "Commands/CommandFamilies.h"
#include "TvwallProtocol.h"

namespace standin_host {

namespace {

using namespace ORVA_NET_PROTOCOL;
using namespace ORVA2_DECODER_TVW;

constexpr std::size_t kWindowWords = 5;
constexpr char kWindowShape[] = "each window takes five numbers: WINDOW X Y WIDTH HEIGHT";

// The most sub-windows of one window; more need a raw command.
constexpr int64_t kMaxMode = 4096;

struct WindowArguments {
    Words words;
    std::string modeWord = "1";
    Words osdIds;
    std::string layer = "0";

    Fields Args(const std::vector<Window>& windows) const
    {
        Fields list = Fields::array();
        for (const Window& window : windows) {
            list.push_back({{"id", window.id},
                            {"x", window.x},
                            {"y", window.y},
                            {"width", window.width},
                            {"height", window.height}});
        }
        return {{"windows", list},
                {"mode", Number(modeWord, {"--mode", 0, kMaxMode})},
                {"osd", windows.empty() ? std::vector<uint32_t>() : windows.front().osdIds},
                {"layer", Unsigned(layer, "--layer")}};
    }

    std::vector<Window> Windows() const
    {
        const auto groups = Groups(words, kWindowWords, kWindowShape);
        const auto mode = static_cast<std::size_t>(Number(modeWord, {"--mode", 0, kMaxMode}));
        if (osdIds.size() > mode) {
            throw UsageError("--osd gives more ids than --mode has sub-windows");
        }
        std::vector<uint32_t> ids(mode, 0);
        std::transform(osdIds.begin(), osdIds.end(), ids.begin(),
                       [](const std::string& id) { return Unsigned(id, "an OSD id"); });
        std::vector<Window> windows;
        windows.reserve(groups.size());
        for (const WordGroup& group : groups) {
            windows.push_back({Unsigned(group[0], "the window id"), Unsigned(group[1], "X"),
                               Unsigned(group[2], "Y"), Unsigned(group[3], "the width"),
                               Unsigned(group[4], "the height"), Unsigned(layer, "--layer"), ids});
        }
        return windows;
    }
};

// Creating and splitting use the same record; command and option differ.
void SetUpWindowRecord(CLI::App& app, ConsoleCommand& command, unsigned int cmdID, uint32_t optType,
                       bool modeRequired)
{
    const auto arguments = std::make_shared<WindowArguments>();
    app.add_option("WINDOW", arguments->words,
                   "WINDOW X Y WIDTH HEIGHT in wall coordinates; repeat for several windows")
        ->type_name("")
        ->required();
    app.add_option("--mode", arguments->modeWord, "split mode: the number of sub-windows")
        ->type_name("1|4|9|16|N")
        ->capture_default_str()
        ->required(modeRequired);
    app.add_option("--osd", arguments->osdIds,
                   "on-screen-display ids of the sub-windows in order, ID,ID,... "
                   "(the rest get 0)")
        ->type_name("ID,...")
        ->delimiter(',')
        ->allow_extra_args(false);
    app.add_option("--layer", arguments->layer, "layer id, of which the decoder is not told")
        ->type_name("N")
        ->capture_default_str();
    app.callback([&command, arguments, cmdID, optType] {
        const auto windows = arguments->Windows();
        RequestOption(command, cmdID, optType, CreateRecord(windows));
        command.args = arguments->Args(windows);
        command.title += Join(arguments->words) + " mode " + arguments->modeWord;
    });
}

} // namespace

void SetUpWindowCreate(CLI::App& app, ConsoleCommand& command)
{
    SetUpWindowRecord(app, command, KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_CREATE_CANVAS, false);
}

void SetUpWindowSplit(CLI::App& app, ConsoleCommand& command)
{
    SetUpWindowRecord(app, command, KEST_CMD_TVWALL_DECODE_SAVE_CONFIG, TVWALL_DECODE_SET_DECODERFRAME, true);
}

void SetUpWindowMove(CLI::App& app, ConsoleCommand& command)
{
    const auto words = AddWords(
        app, "WINDOW", "WINDOW X Y WIDTH HEIGHT, X and Y may be negative; repeat for several windows");
    app.callback([&command, words] {
        std::vector<WindowMove> moves;
        Fields& windows = command.args["windows"] = Fields::array();
        for (const WordGroup& group : Groups(*words, kWindowWords, kWindowShape)) {
            moves.push_back({Signed(group[0], "the window id"), Signed(group[1], "X"), Signed(group[2], "Y"),
                             Signed(group[3], "the width"), Signed(group[4], "the height")});
            const WindowMove& move = moves.back();
            windows.push_back({{"id", move.id},
                               {"x", move.x},
                               {"y", move.y},
                               {"width", move.width},
                               {"height", move.height}});
        }
        RequestOption(command, KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_MODIFY_CANVAS, MoveRecord(moves));
        command.title += Join(*words);
    });
}

void SetUpWindowRaise(CLI::App& app, ConsoleCommand& command)
{
    const auto idWord = AddWord(app, "WINDOW", "window id");
    app.callback([&command, idWord] {
        const uint32_t id = Unsigned(*idWord, "the window id");
        RequestOption(command, KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_TOP_CANVAS, RaiseRecord(id));
        command.args["id"] = id;
        command.title += ' ' + *idWord;
    });
}

void SetUpWindowDelete(CLI::App& app, ConsoleCommand& command)
{
    const auto idWords = AddWords(app, "WINDOW", "window ids");
    app.callback([&command, idWords] {
        std::vector<uint32_t> ids;
        for (const std::string& id : *idWords) {
            ids.push_back(Unsigned(id, "the window id"));
        }
        RequestOption(command, KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_DEL_CANVAS, DeleteRecord(ids));
        command.args["ids"] = ids;
        command.title += Join(*idWords);
    });
}

} // namespace standin_host
