#include "Console/Options.h"

#include <algorithm>
#include <charconv>
#include <map>

#include <CLI/CLI.hpp>

#include "Base/ExitStatus.h"
#include "Base/GuidText.h"
#include "Base/UserFolders.h"
#include "Commands/Records/FailureCodes.h"
#include "Commands/Records/Payloads.h"
#include "Commands/TypedCommand.h"
#include "Host/Plugin.h"
#include "Tools/Common/Address.h"
#include "Tools/Common/Nearest.h"
#include "Tools/Common/OptionFaults.h"
#include "Tools/Common/TerminalText.h"

namespace standin_host {

namespace {

using Kind = ConsoleCommand::Kind;

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
  tvwall-host --decoder [2001:db8::7]:9000 --user admin --password-file secret profile add entrance
  tvwall-host --profile entrance shell
  tvwall-host --profile entrance --json watch | jq -c '.fields.channels[]?'

JSON:
  Each line is an object. Its first fields are v, the form's number, which is 1, and time, RFC 3339 in UTC. What may
  change without a new number is in docs/tools.md of the documentation, the schema in docs/tvwall-host.schema.json.
  command, args       of a command: as typed, and its arguments by name
  line                its line in a script
  result              done, queued or dryRun;
                      of a failure: refused, timeout, lost, notConnected, loginRefused, unanswered or malformed
  code                the plug-in's failure code, such as "0x20000002"
  deviceCode, deviceMeaning
                      the code in the decoder's reply, and its words
  fields              what the answer or the notification holds, by name
  problem             what the text output says of the failure
  event               of a notification: channels, which lists all, channelStates, or unknown
                      of a link: linkLost with its reason, linkBack with its gap in milliseconds
  fields.channels     of a notification: objects with id, name, and online, which is true or false
  data, nLen, destination
                      of a notification: what the plug-in handed over
  answer, hex         of raw: buffer, failure or none, and its bytes
  id, option, payload
                      of a dry run: what would be queued

Order of settings:
  An option counts before the environment, and the environment before the profile. In the shell, connect PROFILE
  takes what that profile says first.

Environment:
  TVWALL_DECODER          the decoder's address, without --decoder
  TVWALL_USER             the account, without --user
  TVWALL_PROFILE          the profile, without --profile
  TVWALL_PASSWORD         the account's password, without --password-file; where both are missing, a prompt asks
  TVWALL_SOURCE_PASSWORD  password of video sources, without --source-password-file; a wall file may hold others
  XDG_CONFIG_HOME         folder for the profiles, instead of ~/.config
  XDG_STATE_HOME          folder for what the shell remembers, instead of ~/.local/state

Files:
  ~/.config/tvwall/profiles.json
      the profiles, which nobody but their owner may be able to write
  ~/.local/state/tvwall/history
      lines of the shell, readable by their owner only
  ~/.editrc
      keys of the shell, see editrc(5)

Failure codes:
)";

// Option texts that need more than CLI11's own conversion.
struct RawOptions {
    std::string profile;
    std::string nodeId = "{00000201-0000-4000-8000-000000000001}";
    std::string answerTimeout = "35";
    std::string logLevel = "abnormal";
    bool noLogin = false;
    bool stopOnFailure = false;
};

void AddSettings(CLI::App& app, Profile& given, std::string& profile)
{
    app.add_option("--profile", profile, "take what the other options leave open from this profile")
        ->type_name("PROFILE");
    app.add_option("--plugin", given.plugin,
                   "the plug-in library (default: the one that was built or installed with this program)")
        ->type_name("FILE");
    app.add_option("--decoder", given.decoder, "the decoder's address; an IPv6 address goes in brackets")
        ->type_name("HOST:PORT");
    app.add_option("--user", given.user, "account on the decoder")->type_name("NAME");
    app.add_option("--password-file", given.passwordFile,
                   "file whose first line is the password; - is standard input")
        ->type_name("FILE");
    app.add_option(
           "--device-codes", given.deviceCodes,
           "file with the maker's words for the decoder's error codes, in lines NUMBER WORDS; that of "
           "tvwall-decoder comes from its --list-codes")
        ->type_name("FILE");
}

void AddOptions(CLI::App& app, Options& options, RawOptions& raw)
{
    app.add_flag("--json", options.json,
                 "one JSON object per line for each answer and notification, see JSON below");
    app.add_flag("-q,--quiet", options.quiet, "print failures only");
    app.add_flag("--dry-run", options.dryRun,
                 "print what the commands would queue, without connecting; passwords are blanked");
    app.add_flag("--stop-on-failure", raw.stopOnFailure, "end a script at the first command that fails");
    app.add_flag("--trace", options.trace, "print every frame of the link to standard error");
    app.add_option("--answer-timeout", raw.answerTimeout, "seconds to wait for an answer")
        ->type_name("S")
        ->capture_default_str();
    app.add_flag("--buffered-receive", options.bufferedReceive,
                 "let the plug-in keep incomplete frames itself");
    app.add_flag("--no-login", raw.noLogin, "run the commands without logging in first");
    app.add_option("--node-id", raw.nodeId, "identifier of the decoder's node")
        ->type_name("GUID")
        ->capture_default_str();
    app.add_option("--log-level", raw.logLevel, "what is logged, and all before it in this list")
        ->type_name("off|error|abnormal|normal|debug")
        ->capture_default_str();
    app.add_option("--log-file", options.logFile, "write the log there instead of to standard error")
        ->type_name("FILE");
}

// What the options leave open is taken from the environment, and what that leaves open from the profile.
void Settle(const std::string& profileOption, Options& options)
{
    const Profile environment{EnvironmentText("TVWALL_DECODER"), EnvironmentText("TVWALL_USER"), "", "", ""};
    const char* from = options.given.decoder.empty() ? "TVWALL_DECODER" : "--decoder";
    options.given = Over(options.given, environment);
    if (const std::string& decoder = options.given.decoder;
        !decoder.empty() && !tools::ParseAddress(decoder, 1)) {
        throw UsageError(std::string(from) + ' ' + tools::AddressRemedy(decoder, 1));
    }
    const std::string profile = profileOption.empty() ? EnvironmentText("TVWALL_PROFILE") : profileOption;
    options.settings = profile.empty() ? options.given : Over(options.given, ProfileFile().Find(profile));
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
        throw UsageError("--log-level takes off, error, abnormal, normal or debug, not '" +
                         tools::OneLine(name) + "'" +
                         tools::DidYouMean(name, {"off", "error", "abnormal", "normal", "debug"}));
    }
    return it->second;
}

std::chrono::milliseconds ReadSeconds(const std::string& text)
{
    double seconds = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, seconds);
    if (error != std::errc() || stop != end || !(seconds >= 0.001 && seconds <= 86400.0)) {
        throw UsageError("--answer-timeout takes a number of seconds from 0.001 to 86400, not '" +
                         tools::OneLine(text) + "'");
    }
    return std::chrono::milliseconds(static_cast<long>(seconds * 1000.0));
}

void Interpret(const RawOptions& raw, Options& options)
{
    options.login = !raw.noLogin;
    options.command.stopOnFailure |= raw.stopOnFailure;
    const bool connects = options.command.kind != Kind::Profile;
    if (options.dryRun && (!connects || options.command.kind == Kind::Shell)) {
        throw UsageError("--dry-run is for scripts and single commands");
    }
    if (connects || options.command.profileSettings) {
        Settle(raw.profile, options);
    }
    if (connects) {
        UseSettings(options.settings, options);
    }
    const bool readsInput = options.command.kind == Kind::Shell || options.command.scriptFile == "-";
    if (readsInput && options.settings.passwordFile == "-") {
        throw UsageError("standard input holds either the password or the commands; name a password file");
    }
    const auto nodeID = ParseGuid(raw.nodeId);
    if (!nodeID) {
        throw UsageError("--node-id takes a GUID, not '" + tools::OneLine(raw.nodeId) + "'");
    }
    options.nodeID = *nodeID;
    options.logLevel = ReadLogLevel(raw.logLevel);
    options.answerTimeout = ReadSeconds(raw.answerTimeout);
}

// "help window" asks for what "window --help" does.
std::vector<std::string> WithHelpLast(const CLI::App& app, std::vector<std::string> words)
{
    auto word = words.begin();
    while (word != words.end() && word->starts_with('-')) {
        const CLI::Option* option = app.get_option_no_throw(*word);
        const bool value = option != nullptr && option->get_items_expected_max() > 0;
        word += value && word + 1 != words.end() ? 2 : 1;
    }
    if (word != words.end() && *word == "help") {
        words.erase(word);
        words.emplace_back("--help");
    }
    return words;
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

void UseSettings(const Profile& settings, Options& options)
{
    if (settings.decoder.empty() && !options.dryRun) {
        throw UsageError("no decoder: give --decoder HOST:PORT, set TVWALL_DECODER or name a profile");
    }
    const bool needed = options.login || options.command.kind == Kind::Login;
    if (settings.user.empty() && needed && !options.dryRun) {
        throw UsageError("no user to log in: give --user NAME, set TVWALL_USER or name a profile");
    }
    if (settings.user.size() > kMaxCredential) {
        throw UsageError("the user name is longer than 63 bytes");
    }
    options.settings = settings;
    if (const auto address = tools::ParseAddress(settings.decoder, 1)) { // checked where it came from
        options.host = address->host;
        options.port = std::to_string(address->port);
    }
    options.user = settings.user;
    options.passwordFile = settings.passwordFile;
    options.pluginFile = settings.plugin.empty() ? DefaultPluginFile() : settings.plugin;
    options.deviceCodes = settings.deviceCodes.empty() ? DeviceCodes() : DeviceCodes(settings.deviceCodes);
}

Options ParseOptions(int argc, const char* const* argv)
{
    Options options;
    RawOptions raw;
    CLI::App app(kDescription, "tvwall-host");
    app.set_version_flag("--version", "tvwall-host " TVWALL_VERSION);
    app.set_help_all_flag("--help-all", "print this help and that of every command below");
    AddSettings(app, options.given, raw.profile);
    AddOptions(app, options, raw);
    AddConsoleCommands(app, options.command, kPlaceCommandLine);
    // After the commands, which would inherit it.
    app.footer(kExamples + FailureTable() + "\nExit status:\n" + ExitStatusTable());
    try {
        const auto words = WithHelpLast(app, {argv + 1, argv + std::max(argc, 1)});
        app.parse(std::vector<std::string>(words.rbegin(), words.rend())); // the parser takes them in reverse
    } catch (const CLI::CallForVersion& version) {
        throw ExitError(kExitAllAnswered, version.what());
    } catch (const CLI::CallForAllHelp&) {
        throw ExitError(kExitAllAnswered, HelpOfAll(app, ""));
    } catch (const CLI::CallForHelp&) {
        throw ExitError(kExitAllAnswered, HelpOf(app));
    } catch (const CLI::Error& error) {
        RefuseLine(app, tools::OptionFault(error));
    } catch (const UsageError& error) {
        RefuseLine(app, error.what());
    }
    CheckParsedCommand(app);
    options.command.typed = TypedCommand(app);
    Interpret(raw, options);
    return options;
}

} // namespace standin_host
