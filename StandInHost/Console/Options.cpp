#include "Console/Options.h"

#include <cmath>
#include <map>

#include <CLI/CLI.hpp>

#include "Base/ExitStatus.h"
#include "Base/GuidText.h"
#include "Commands/Records/FailureCodes.h"
#include "Commands/Records/Payloads.h"
#include "Commands/TypedCommand.h"
#include "Host/Plugin.h"
#include "Tools/Common/Address.h"

namespace standin_host {

namespace {

constexpr char kDescription[] =
    "Loads the decoder plug-in, connects to a decoder and runs commands on its wall.";

constexpr char kExamples[] = R"(Examples:
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

// Option texts that need more than CLI11's own conversion.
struct RawOptions {
    std::string decoder;
    std::string nodeId = "{00000201-0000-4000-8000-000000000001}";
    double answerTimeout = 35.0;
    std::string logLevel = "abnormal";
    std::string deviceCodes;
    bool noLogin = false;
    bool stopOnFailure = false;
};

void AddOptions(CLI::App& app, Options& options, RawOptions& raw)
{
    app.add_option("--plugin", options.pluginFile,
                   "the plug-in library (default: the one that was built or installed with this program)")
        ->type_name("FILE");
    app.add_option("--decoder", raw.decoder, "the decoder's address")->type_name("HOST:PORT");
    app.add_option("--user", options.user, "account on the decoder")->type_name("NAME");
    app.add_option("--password-file", options.passwordFile, "file whose first line is the password")
        ->type_name("FILE");
    app.add_option("--device-codes", raw.deviceCodes,
                   "file with the maker's words for the decoder's error codes, in lines NUMBER WORDS")
        ->type_name("FILE");
    app.add_flag("--json", options.json, "one JSON object a line for each answer and notification");
    app.add_flag("-q,--quiet", options.quiet, "print failures only");
    app.add_flag("--dry-run", options.dryRun,
                 "print what the commands would queue, without connecting; passwords are blanked");
    app.add_flag("--stop-on-failure", raw.stopOnFailure, "end a script at the first command that fails");
    app.add_flag("--trace", options.trace, "print every frame of the link to standard error");
    app.add_option("--answer-timeout", raw.answerTimeout, "seconds to wait for an answer")
        ->type_name("S")
        ->check(CLI::Range(0.001, 86400.0, "0.001 to 86400"))
        ->capture_default_str();
    app.add_flag("--buffered-receive", options.bufferedReceive,
                 "let the plug-in keep incomplete frames itself");
    app.add_flag("--no-login", raw.noLogin, "run the commands without logging in first");
    app.add_option("--node-id", raw.nodeId, "identifier of the decoder's node")
        ->type_name("GUID")
        ->capture_default_str();
    app.add_option("--log-level", raw.logLevel, "off, error, abnormal, normal or debug")
        ->type_name("LEVEL")
        ->capture_default_str();
    app.add_option("--log-file", options.logFile, "write the log there instead of to standard error")
        ->type_name("FILE");
}

void InterpretDecoder(const std::string& decoder, Options& options)
{
    if (decoder.empty() && options.dryRun) {
        return;
    }
    if (decoder.empty()) {
        throw UsageError("--decoder HOST:PORT is required");
    }
    const auto address = tools::ParseAddress(decoder, 1);
    if (!address) {
        throw UsageError("--decoder takes HOST:PORT with a port from 1 to 65535, not '" + decoder + "'");
    }
    options.host = address->host;
    options.port = std::to_string(address->port);
}

LogLevel ReadLogLevel(const std::string& name)
{
    static const std::map<std::string, LogLevel> kLevels{{"off", LogLevel::Off},
                                                         {"error", LogLevel::Error},
                                                         {"abnormal", LogLevel::Abnormal},
                                                         {"normal", LogLevel::Normal},
                                                         {"debug", LogLevel::Debug}};
    const auto it = kLevels.find(name);
    if (it == kLevels.end()) {
        throw UsageError("--log-level takes off, error, abnormal, normal or debug, not '" + name + "'");
    }
    return it->second;
}

void CheckUser(const Options& options)
{
    const bool needed = options.login || options.command.kind == ConsoleCommand::Kind::Login;
    if (options.user.empty() && needed && !options.dryRun) {
        throw UsageError("--user NAME is required to log in");
    }
    if (options.user.size() > kMaxCredential) {
        throw UsageError("the user name is longer than 63 bytes");
    }
}

void Interpret(const RawOptions& raw, Options& options)
{
    options.login = !raw.noLogin;
    options.command.stopOnFailure |= raw.stopOnFailure;
    if (options.dryRun && options.command.kind == ConsoleCommand::Kind::Shell) {
        throw UsageError("--dry-run is for scripts and single commands");
    }
    InterpretDecoder(raw.decoder, options);
    CheckUser(options);
    const auto nodeID = ParseGuid(raw.nodeId);
    if (!nodeID) {
        throw UsageError("--node-id takes a GUID, not '" + raw.nodeId + "'");
    }
    options.nodeID = *nodeID;
    options.logLevel = ReadLogLevel(raw.logLevel);
    if (!raw.deviceCodes.empty()) {
        options.deviceCodes = DeviceCodes(raw.deviceCodes);
    }
    if (std::isnan(raw.answerTimeout)) {
        throw UsageError("--answer-timeout takes a number of seconds");
    }
    options.answerTimeout = std::chrono::milliseconds(static_cast<long>(raw.answerTimeout * 1000.0));
    if (options.pluginFile.empty()) {
        options.pluginFile = DefaultPluginFile();
    }
}

// The library's own goes one level deep, but a group's commands have options too.
std::string HelpOfAll(const CLI::App& app, const std::string& before)
{
    const std::string name = before.empty() ? app.get_name() : before + ' ' + app.get_name();
    if (const auto chosen = app.get_subcommands(); !chosen.empty()) {
        return HelpOfAll(*chosen.back(), name);
    }
    std::string help = app.help(before);
    for (const CLI::App* command : app.get_subcommands([](const CLI::App* /*any*/) { return true; })) {
        help += '\n' + HelpOfAll(*command, name);
    }
    return help;
}

} // namespace

Options ParseOptions(int argc, const char* const* argv)
{
    Options options;
    RawOptions raw;
    CLI::App app(kDescription, "tvwall-host");
    app.set_version_flag("--version", "tvwall-host " TVWALL_VERSION);
    app.set_help_all_flag("--help-all", "print this help and that of every command below");
    AddOptions(app, options, raw);
    AddConsoleCommands(app, options.command, kPlaceCommandLine);
    // After the commands, which would inherit it.
    app.footer(kExamples + FailureTable() + "\nExit status:\n" + ExitStatusTable());
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForVersion& version) {
        throw ExitError(kExitAllAnswered, version.what());
    } catch (const CLI::CallForAllHelp&) {
        throw ExitError(kExitAllAnswered, HelpOfAll(app, ""));
    } catch (const CLI::CallForHelp&) {
        throw ExitError(kExitAllAnswered, app.help());
    } catch (const CLI::Error& error) {
        throw UsageError(error.what());
    }
    CheckParsedCommand(app);
    options.command.typed = TypedCommand(app);
    Interpret(raw, options);
    return options;
}

} // namespace standin_host
