#include "Commands/CommandFamilies.h"
#include "Commands/ConsoleCommands.h"
#include "Commands/Records/AnswerForms.h"
#include "TvwallProtocol.h"

namespace standin_host {

using namespace ORVA_NET_PROTOCOL;
using namespace ORVA2_DECODER_TVW;

void SetUpInfo(CLI::App& app, ConsoleCommand& command)
{
    app.callback([&command] {
        RequestOption(command, KEST_CMD_TVWALL_DECODE_GET_CONFIG, TVWALL_DECODE_GET_SYSINFO, {},
                      kSystemInfoForm);
    });
}

void SetUpConfig(CLI::App& app, ConsoleCommand& command)
{
    app.callback([&command] {
        RequestOption(command, KEST_CMD_TVWALL_DECODE_GET_CONFIG, TVWALL_DECODE_GET_BASICCFG, {},
                      kBasicConfigForm);
    });
}

void SetUpLogin(CLI::App& app, ConsoleCommand& command)
{
    app.callback([&command] { command.kind = ConsoleCommand::Kind::Login; });
}

ConsoleCommand LoginCommand(const std::string& user, const std::string& password)
{
    ConsoleCommand login;
    Request(login, KEST_CMD_REQUEST_LOGIN, LoginRecord(user, password), kLoginForm);
    login.kind = ConsoleCommand::Kind::Login;
    login.title = "login " + user;
    login.typed = "login";
    login.args["user"] = user;
    return login;
}

void SetUpLogout(CLI::App& app, ConsoleCommand& command)
{
    app.callback([&command] {
        RequestOption(command, KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_LOGOUT, {}, kEmptyForm);
    });
}

} // namespace standin_host
