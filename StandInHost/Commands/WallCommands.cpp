#include "Commands/CommandFamilies.h"
#include "Commands/Records/Credentials.h"
#include "Commands/Records/WallFile.h"
#include "TvwallProtocol.h"

namespace standin_host {

using namespace ORVA_NET_PROTOCOL;
using namespace ORVA2_DECODER_TVW;

void SetUpWallClear(CLI::App& app, SConsoleCommand& command)
{
    app.callback([&command] {
        RequestOption(command, KEST_CMD_TVWALL_DECODE_SAVE_CONFIG, TVWALL_DECODE_CLEAR_WALL, {});
    });
}

void SetUpWallApply(CLI::App& app, SConsoleCommand& command)
{
    const auto pFile = AddWord(app, "FILE", kWallFileHelp);
    const auto pPasswordFile = std::make_shared<std::string>();
    app.add_option("--source-password-file", *pPasswordFile,
                   "file whose first line is the password of the sources that have a user and no password "
                   "(else TVWALL_SOURCE_PASSWORD is taken)")
        ->type_name("FILE");
    app.callback([&command, pFile, pPasswordFile] {
        RequestOption(command, KEST_CMD_TVWALL_DECODE_SAVE_CONFIG, TVWALL_DECODE_SET_WALL_INFO,
                      WallRecord(ReadWallFile(*pFile, SourcePassword(*pPasswordFile))));
        command.strTitle += ' ' + *pFile;
    });
}

} // namespace standin_host
