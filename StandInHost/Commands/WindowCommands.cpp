#include <algorithm>

#include "Base/ExitStatus.h"
#include "Commands/CommandFamilies.h"
#include "TvwallProtocol.h"

namespace standin_host {

namespace {

using namespace ORVA_NET_PROTOCOL;
using namespace ORVA2_DECODER_TVW;

constexpr std::size_t kWindowWords = 5;
constexpr char s_szWindowShape[] = "each window takes five numbers: ID X Y WIDTH HEIGHT";

// The sub-windows of one window; what is beyond needs a raw command.
constexpr int64_t kMaxMode = 4096;

struct SWindowArguments {
    Words words;
    std::string strMode = "1";
    Words osdIds;
    std::string strLayer = "0";

    std::vector<SWindow> Windows() const
    {
        const auto groups = Groups(words, kWindowWords, s_szWindowShape);
        const auto nMode = static_cast<std::size_t>(Number(strMode, {"--mode", 0, kMaxMode}));
        if (osdIds.size() > nMode) {
            throw CUsageError("--osd gives more ids than --mode has sub-windows");
        }
        std::vector<uint32_t> ids(nMode, 0);
        std::transform(osdIds.begin(), osdIds.end(), ids.begin(),
                       [](const std::string& strId) { return Unsigned(strId, "an OSD id"); });
        std::vector<SWindow> windows;
        windows.reserve(groups.size());
        for (const WordGroup& group : groups) {
            windows.push_back({Unsigned(group[0], "the window id"), Unsigned(group[1], "X"),
                               Unsigned(group[2], "Y"), Unsigned(group[3], "the width"),
                               Unsigned(group[4], "the height"), Unsigned(strLayer, "--layer"), ids});
        }
        return windows;
    }
};

// Creating and splitting take the same record; the command and option differ.
void SetUpWindowRecord(CLI::App& app, SConsoleCommand& command, unsigned int nCmdID, uint32_t nOptType,
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
    app.add_option("--layer", pArguments->strLayer, "layer id, of which the decoder is not told")
        ->type_name("N")
        ->capture_default_str();
    app.callback([&command, pArguments, nCmdID, nOptType] {
        RequestOption(command, nCmdID, nOptType, CreateRecord(pArguments->Windows()));
        command.strTitle += Join(pArguments->words) + " mode " + pArguments->strMode;
    });
}

} // namespace

void SetUpWindowCreate(CLI::App& app, SConsoleCommand& command)
{
    SetUpWindowRecord(app, command, KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_CREATE_CANVAS, false);
}

void SetUpWindowSplit(CLI::App& app, SConsoleCommand& command)
{
    SetUpWindowRecord(app, command, KEST_CMD_TVWALL_DECODE_SAVE_CONFIG, TVWALL_DECODE_SET_DECODERFRAME, true);
}

void SetUpWindowMove(CLI::App& app, SConsoleCommand& command)
{
    const auto pWords =
        AddWords(app, "WINDOW", "ID X Y WIDTH HEIGHT, X and Y may be negative; repeat for several windows");
    app.callback([&command, pWords] {
        std::vector<SWindowMove> moves;
        for (const WordGroup& group : Groups(*pWords, kWindowWords, s_szWindowShape)) {
            moves.push_back({Signed(group[0], "the window id"), Signed(group[1], "X"), Signed(group[2], "Y"),
                             Signed(group[3], "the width"), Signed(group[4], "the height")});
        }
        RequestOption(command, KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_MODIFY_CANVAS, MoveRecord(moves));
        command.strTitle += Join(*pWords);
    });
}

void SetUpWindowRaise(CLI::App& app, SConsoleCommand& command)
{
    const auto pId = AddWord(app, "ID", "window id");
    app.callback([&command, pId] {
        RequestOption(command, KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_TOP_CANVAS,
                      RaiseRecord(Unsigned(*pId, "the window id")));
        command.strTitle += ' ' + *pId;
    });
}

void SetUpWindowDelete(CLI::App& app, SConsoleCommand& command)
{
    const auto pIds = AddWords(app, "ID", "window ids");
    app.callback([&command, pIds] {
        std::vector<uint32_t> ids;
        for (const std::string& strId : *pIds) {
            ids.push_back(Unsigned(strId, "the window id"));
        }
        RequestOption(command, KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_DEL_CANVAS, DeleteRecord(ids));
        command.strTitle += Join(*pIds);
    });
}

} // namespace standin_host
