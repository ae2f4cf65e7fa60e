#include <utility>

#include "Commands/CommandFamilies.h"
#include "Commands/Records/Credentials.h"
#include "Commands/Records/WallFile.h"
#include "TvwallProtocol.h"

namespace standin_host {

using namespace ORVA_NET_PROTOCOL;
using namespace ORVA2_DECODER_TVW;

void SetUpWallClear(CLI::App& app, ConsoleCommand& command)
{
    app.callback([&command] {
        RequestOption(command, KEST_CMD_TVWALL_DECODE_SAVE_CONFIG, TVWALL_DECODE_CLEAR_WALL, {});
    });
}

namespace {

bool LacksPassword(const std::vector<WallWindow>& windows)
{
    for (const WallWindow& window : windows) {
        for (const WallSubWindow& sub : window.subWindows) {
            if (sub.media.passwordMissing) {
                return true;
            }
        }
    }
    return false;
}

void FillIn(std::vector<WallWindow>& windows, SourcePasswords& passwords)
{
    for (WallWindow& window : windows) {
        for (WallSubWindow& sub : window.subWindows) {
            if (sub.media.passwordMissing) {
                sub.media.password = passwords.Of(sub.media.user);
            }
        }
    }
}

} // namespace

void SetUpWallApply(CLI::App& app, ConsoleCommand& command)
{
    const auto file = AddWord(app, "FILE", kWallFileHelp);
    const auto passwordFile = std::make_shared<std::string>();
    app.add_option("--source-password-file", *passwordFile,
                   "file whose first line is the password of the sources that have a user and no password "
                   "(else TVWALL_SOURCE_PASSWORD is taken, else a prompt asks)")
        ->type_name("FILE");
    app.callback([&command, file, passwordFile] {
        command.args["file"] = *file;
        auto windows = ReadWallFile(*file, SourcePassword(*passwordFile));
        RequestOption(command, KEST_CMD_TVWALL_DECODE_SAVE_CONFIG, TVWALL_DECODE_SET_WALL_INFO,
                      WallRecord(windows));
        command.title += ' ' + *file;
        command.readsFiles = true;
        for (const WallWindow& window : windows) {
            command.windows.push_back(std::to_string(window.id));
        }
        if (LacksPassword(windows)) {
            command.complete = [windows = std::move(windows)](ConsoleCommand& incomplete,
                                                              SourcePasswords& passwords) mutable {
                FillIn(windows, passwords);
                incomplete.payload = OptionPayload(incomplete.optType, WallRecord(windows));
            };
        }
    });
}

} // namespace standin_host
