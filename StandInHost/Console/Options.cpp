#include "Console/Options.h"

#include <cmath>
#include <map>

#include <CLI/CLI.hpp>

#include "Base/ExitStatus.h"
#include "Base/GuidText.h"
#include "Commands/Records/FailureCodes.h"
#include "Commands/Records/Payloads.h"
#include "Host/Plugin.h"
#include "Tools/Common/Address.h"

namespace standin_host {

namespace {

constexpr char s_szDescription[] =
    "Loads the decoder plug-in, connects to a decoder and runs commands on its wall.";

constexpr char s_szExamples[] = R"(Examples:
  tvwall-host --decoder 192.0.2.7:9000 --user admin login
  tvwall-host --decoder 192.0.2.7:9000 --user admin shell
  tvwall-host --decoder 192.0.2.7:9000 --user admin window create 1 0 0 960 540 --mode 4
  tvwall-host --decoder 192.0.2.7:9000 --user admin window move 1 -10 0 960 540
  tvwall-host --decoder 192.0.2.7:9000 --user admin wall apply wall.json
  tvwall-host --decoder 192.0.2.7:9000 --user admin --json script evening.txt
  tvwall-host --decoder 192.0.2.7:9000 --user admin raw 0x50002 --option 0x60007 --payload record.bin

Environment:
  TVWALL_PASSWORD         the account's password, without --password-file; where both are missing, a prompt asks
  TVWALL_SOURCE_PASSWORD  password of video sources, without --source-password-file; a wall file may hold others
  XDG_STATE_HOME          folder for what the shell remembers, instead of ~/.local/state

Files:
  ~/.local/state/tvwall/history
      lines of the shell, readable by their owner only
  ~/.editrc
      keys of the shell, see editrc(5)

Failure codes:
)";

constexpr char s_szExitStatus[] = R"(
Exit status:
  0        all answered; a shell on a terminal has ended
  1        a command was answered with a failure
  2        wrong usage, or no usable plug-in
  3        cannot connect, or connection lost
  4        no answer in time
  5        login refused
  128 + n  ended by signal n)";

// The texts of options that need more than CLI11's own conversion.
struct SRawOptions {
    std::string strDecoder;
    std::string strNodeId = "{00000201-0000-4000-8000-000000000001}";
    double dAnswerTimeout = 35.0;
    std::string strLogLevel = "abnormal";
    bool bNoLogin = false;
};

void AddOptions(CLI::App& app, SOptions& options, SRawOptions& raw)
{
    app.add_option("--plugin", options.strPluginFile,
                   "the plug-in library (default: the one that was built or installed with this program)")
        ->type_name("FILE");
    app.add_option("--decoder", raw.strDecoder, "the decoder's address")->type_name("HOST:PORT");
    app.add_option("--user", options.strUser, "account on the decoder")->type_name("NAME");
    app.add_option("--password-file", options.strPasswordFile, "file whose first line is the password")
        ->type_name("FILE");
    app.add_flag("--json", options.bJson, "one JSON object a line for each answer and notification");
    app.add_flag("--trace", options.bTrace, "print every frame of the link to standard error");
    app.add_option("--answer-timeout", raw.dAnswerTimeout, "seconds to wait for an answer")
        ->type_name("S")
        ->check(CLI::Range(0.001, 86400.0, "0.001 to 86400"))
        ->capture_default_str();
    app.add_flag("--buffered-receive", options.bBufferedReceive,
                 "let the plug-in keep incomplete frames itself");
    app.add_flag("--no-login", raw.bNoLogin, "run the commands without logging in first");
    app.add_option("--node-id", raw.strNodeId, "identifier of the decoder's node")
        ->type_name("GUID")
        ->capture_default_str();
    app.add_option("--log-level", raw.strLogLevel, "off, error, abnormal, normal or debug")
        ->type_name("LEVEL")
        ->capture_default_str();
    app.add_option("--log-file", options.strLogFile, "write the log there instead of to standard error")
        ->type_name("FILE");
}

void InterpretDecoder(const std::string& strDecoder, SOptions& options)
{
    if (strDecoder.empty()) {
        throw CUsageError("--decoder HOST:PORT is required");
    }
    const auto address = tools::ParseAddress(strDecoder, 1);
    if (!address) {
        throw CUsageError("--decoder takes HOST:PORT with a port from 1 to 65535, not '" + strDecoder + "'");
    }
    options.strHost = address->host;
    options.strPort = std::to_string(address->port);
}

ELogLevel LogLevel(const std::string& strName)
{
    static const std::map<std::string, ELogLevel> s_levels{{"off", ELogLevel::Off},
                                                           {"error", ELogLevel::Error},
                                                           {"abnormal", ELogLevel::Abnormal},
                                                           {"normal", ELogLevel::Normal},
                                                           {"debug", ELogLevel::Debug}};
    const auto it = s_levels.find(strName);
    if (it == s_levels.end()) {
        throw CUsageError("--log-level takes off, error, abnormal, normal or debug, not '" + strName + "'");
    }
    return it->second;
}

void CheckUser(const SOptions& options)
{
    if (options.strUser.empty() &&
        (options.bLogin || options.command.kind == SConsoleCommand::EKind::Login)) {
        throw CUsageError("--user NAME is required to log in");
    }
    if (options.strUser.size() > kMaxCredential) {
        throw CUsageError("the user name is longer than 63 bytes");
    }
}

void Interpret(const SRawOptions& raw, SOptions& options)
{
    options.bLogin = !raw.bNoLogin;
    InterpretDecoder(raw.strDecoder, options);
    CheckUser(options);
    const auto nodeID = ParseGuid(raw.strNodeId);
    if (!nodeID) {
        throw CUsageError("--node-id takes a GUID, not '" + raw.strNodeId + "'");
    }
    options.nodeID = *nodeID;
    options.logLevel = LogLevel(raw.strLogLevel);
    if (std::isnan(raw.dAnswerTimeout)) {
        throw CUsageError("--answer-timeout takes a number of seconds");
    }
    options.answerTimeout = std::chrono::milliseconds(static_cast<long>(raw.dAnswerTimeout * 1000.0));
    if (options.strPluginFile.empty()) {
        options.strPluginFile = DefaultPluginFile();
    }
}

// The library's own goes one level deep, but commands of a group have options, too.
std::string HelpOfAll(const CLI::App& app, const std::string& strBefore)
{
    const std::string strName = strBefore.empty() ? app.get_name() : strBefore + ' ' + app.get_name();
    if (const auto chosen = app.get_subcommands(); !chosen.empty()) {
        return HelpOfAll(*chosen.back(), strName);
    }
    std::string strHelp = app.help(strBefore);
    for (const CLI::App* pCommand : app.get_subcommands([](const CLI::App* /*any*/) { return true; })) {
        strHelp += '\n' + HelpOfAll(*pCommand, strName);
    }
    return strHelp;
}

} // namespace

SOptions ParseOptions(int argc, const char* const* argv)
{
    SOptions options;
    SRawOptions raw;
    CLI::App app(s_szDescription, "tvwall-host");
    app.set_version_flag("--version", "tvwall-host " TVWALL_VERSION);
    app.set_help_all_flag("--help-all", "print this help and that of every command below");
    AddOptions(app, options, raw);
    AddConsoleCommands(app, options.command, PLACE_COMMAND_LINE);
    app.footer(s_szExamples + FailureTable() +
               s_szExitStatus); // after the commands, which would take it over
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForVersion& version) {
        throw CExitError(EXIT_ALL_ANSWERED, version.what());
    } catch (const CLI::CallForAllHelp&) {
        throw CExitError(EXIT_ALL_ANSWERED, HelpOfAll(app, ""));
    } catch (const CLI::CallForHelp&) {
        throw CExitError(EXIT_ALL_ANSWERED, app.help());
    } catch (const CLI::Error& error) {
        throw CUsageError(error.what());
    }
    CheckParsedCommand(app);
    Interpret(raw, options);
    return options;
}

} // namespace standin_host
