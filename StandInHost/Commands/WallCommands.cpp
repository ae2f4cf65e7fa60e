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

void SetUpWallApply(CLI::App& app, ConsoleCommand& command)
{
    const auto file = AddWord(app, "FILE", kWallFileHelp);
    const auto passwordFile = std::make_shared<std::string>();
    app.add_option("--source-password-file", *passwordFile,
                   "file whose first line is the password of the sources that have a user and no password "
                   "(else TVWALL_SOURCE_PASSWORD is taken)")
        ->type_name("FILE");
    app.callback([&command, file, passwordFile] {
        RequestOption(command, KEST_CMD_TVWALL_DECODE_SAVE_CONFIG, TVWALL_DECODE_SET_WALL_INFO,
                      WallRecord(ReadWallFile(*file, SourcePassword(*passwordFile))));
        command.title += ' ' + *file;
    });
}

} // namespace standin_host
