#include "Options.h"

#include <cstdlib>
#include <iostream>
#include <optional>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>
#include <spdlog/fmt/fmt.h>

#include "Link/ErrorCode.h"
#include "Link/Message.h"
#include "State/ScreenGrid.h"
#include "Tools/Common/Address.h"
#include "Tools/Common/Numbers.h"
#include "Tools/Common/OptionFaults.h"
#include "Tools/Common/PasswordFile.h"
#include "Tools/Common/TerminalText.h"

namespace simulated_decoder {

namespace {

constexpr const char* kPasswordVariable = "TVWALL_DECODER_PASSWORD";

std::string Footer()
{
    return "Faults:\n" + DescribeFaults() + R"(  URL is the name of a request, such as docreatewindow.

Examples:
  TVWALL_DECODER_PASSWORD=secret tvwall-decoder --listen 127.0.0.1:7000 --rows 2 --columns 3 --wall-svg wall.svg
  tvwall-decoder --port-file port --user operator --password-file password --json-log requests.json
  tvwall-decoder --password-file password --channels channels.json --source-accounts accounts --wall-text wall.txt
  tvwall-decoder --password-file password --listen 127.0.0.1:7000 --http 127.0.0.1:8080
  tvwall-decoder --password-file password --fault chunk=1 --fault delay=500@docreatewindow --fault beat-every=200

Environment:
  TVWALL_DECODER_PASSWORD  the account's password, without --password-file
  SPDLOG_LEVEL             debug logs every request

Files:
  The decoder keeps none of its own. What the options name is read at the start, or written anew.

Exit status:
  0  stopped by SIGINT or SIGTERM
  1  a file cannot be read or written (or internal failure)
  2  wrong usage
  3  cannot listen)";
}

// The address given by an option. Throws CLI::Error.
void ReadAddress(const char* option, const std::string& text, std::string& host, std::uint16_t& port)
{
    auto address = tools::ParseAddress(text, 0);
    if (!address) {
        throw CLI::RuntimeError(fmt::format("{} {}", option, tools::AddressRemedy(text, 0)), kExitUsage);
    }
    host = std::move(address->host);
    port = address->port;
}

std::string ReadPassword(const std::string& path)
{
    if (path.empty()) {
        const char* value = std::getenv(kPasswordVariable);
        if (value == nullptr || *value == '\0') {
            throw CLI::RuntimeError(fmt::format("no password: use --password-file or {}", kPasswordVariable),
                                    kExitUsage);
        }
        return value;
    }
    auto line = tools::ReadPasswordFile(path);
    if (!line || line->empty()) {
        throw CLI::RuntimeError("cannot read a password from " + path, kExitUsage);
    }
    return *std::move(line);
}

// What is wrong with arguments that belong to no option, without their values: one may be a password.
std::string LeftOver(const CLI::App& app)
{
    for (const std::string& argument : app.remaining()) {
        if (argument.starts_with('-')) {
            return tools::UnknownOption(app, argument);
        }
    }
    return "an argument that belongs to no option; see --help";
}

// The options, and the words of the command line still to be interpreted.
struct CommandLine {
    Options options;
    std::string listen = "127.0.0.1:0";
    std::optional<std::string> http;
    std::string passwordFile;
    std::string notifySeq;
    std::vector<std::string> faults;
};

CLI::Option* AddFile(CLI::App& app, const char* name, std::string& path, const std::string& help)
{
    return app.add_option(name, path, help)->type_name("FILE");
}

void AddConnectionOptions(CLI::App& app, CommandLine& line)
{
    app.add_option("--listen", line.listen, "Where to listen; port 0 picks a free one")
        ->type_name("HOST:PORT")
        ->capture_default_str();
    AddFile(app, "--port-file", line.options.portFile,
            "Write the port number to this file once hosts can connect");
    app.add_option("--http", line.http,
                   "Show the wall as a page here, where faults can be switched, too; it asks for no "
                   "password; port 0 picks a free one")
        ->type_name("HOST:PORT");
    app.add_option("--user", line.options.device.user, "The account that may log in")
        ->type_name("NAME")
        ->capture_default_str();
    AddFile(
        app, "--password-file", line.passwordFile,
        fmt::format("Its password is the first line of this file (else the variable {})", kPasswordVariable));
}

void AddWallOptions(CLI::App& app, DeviceSettings& device)
{
    app.add_option("--rows", device.rows, "Rows of screens, 1 to 16")
        ->type_name("N")
        ->check(tools::NumberFrom(1, kMaxScreens))
        ->capture_default_str();
    app.add_option("--columns", device.columns, "Columns of screens, 1 to 16")
        ->type_name("N")
        ->check(tools::NumberFrom(1, kMaxScreens))
        ->capture_default_str();
    app.add_option("--name", device.name, "The name of the device")
        ->type_name("NAME")
        ->check([](const std::string& name) {
            return HasControls(name) ? std::string("takes no control characters") : std::string();
        })
        ->capture_default_str();
    AddFile(app, "--channels", device.channels,
            "The input channels, a JSON list such as [{\"id\":1,\"name\":\"Gate\",\"online\":true}]; read "
            "again on SIGHUP (else 64 made-up ones)");
    AddFile(app, "--source-accounts", device.sourceAccounts,
            "The accounts that open video sources, lines USER:PASSWORD (else any)");
}

void AddNotificationOptions(CLI::App& app, CommandLine& line)
{
    app.add_option("--notify-channels", line.options.device.notifyChannels,
                   "Channels in each notification of notify-every, 1 to 256 (else by turns)")
        ->type_name("N")
        ->check(tools::NumberFrom(1, 256));
    app.add_option(
           "--notify-seq", line.notifySeq,
           "The sequence number of the first notification, each further one has the next; none: they\n"
           "have no number")
        ->type_name("NUMBER|none")
        ->default_str(std::to_string(*line.options.device.notifySeq));
}

void AddRecordOptions(CLI::App& app, Options& options)
{
    AddFile(app, "--wall-svg", options.device.wallSvg, "Keep a picture of the wall in this file");
    AddFile(app, "--wall-text", options.device.wallText, "Keep the wall as text in this file");
    AddFile(app, "--json-log", options.device.jsonLog,
            "Log every request to this file, one JSON object per line; starts it anew");
    AddFile(app, "--pcap", options.pcap,
            "Capture what is received and sent to this file, for Wireshark; starts it anew");
}

// The number of the first notification, or nothing. Throws CLI::Error.
std::optional<std::uint32_t> ReadNotifySeq(const std::string& text)
{
    const auto seq = tools::ParseDecimal<std::uint32_t>(text);
    if (!seq && text != "none") {
        throw CLI::RuntimeError("--notify-seq takes a number of 32 bits or none, not '" + text + "'",
                                kExitUsage);
    }
    return seq;
}

// Throws CLI::Error.
void Interpret(CommandLine& line)
{
    Options& options = line.options;
    ReadAddress("--listen", line.listen, options.host, options.port);
    if (line.http) {
        ReadAddress("--http", *line.http, options.pageHost, options.pagePort);
    }
    if (!line.notifySeq.empty()) {
        options.device.notifySeq = ReadNotifySeq(line.notifySeq);
    }
    for (const std::string& spec : line.faults) {
        if (const std::string problem = AddFault(options.device.faults, spec); !problem.empty()) {
            throw CLI::RuntimeError("--fault: " + problem, kExitUsage);
        }
    }
    options.device.password = ReadPassword(line.passwordFile);
}

} // namespace

std::variant<Options, int> ParseOptions(int argc, const char* const* argv)
{
    CommandLine line;
    CLI::App app{"A simulated TV-wall decoder: accepts hosts over TCP and keeps a wall in memory.",
                 "tvwall-decoder"};
    app.set_version_flag("--version", "tvwall-decoder " TVWALL_DECODER_VERSION, "Print the version and exit");
    app.add_flag_callback(
        "--list-codes",
        [] {
            std::cout << ListErrorCodes();
            throw CLI::Success();
        },
        "Print the error codes, as tvwall-host reads them with --device-codes, and exit");
    app.add_flag_callback(
        "--list-faults",
        [] {
            std::cout << DescribeFaults();
            throw CLI::Success();
        },
        "Print the faults, one per line, and exit");
    AddConnectionOptions(app, line);
    AddWallOptions(app, line.options.device);
    AddNotificationOptions(app, line);
    AddRecordOptions(app, line.options);
    app.add_option("--fault", line.faults, "Misbehave on order; may be given several times")
        ->type_name("SPEC")
        ->allow_extra_args(false);
    app.footer(Footer());
    try {
        app.parse(argc, argv);
        Interpret(line);
    } catch (const CLI::Success& success) {
        return app.exit(success);
    } catch (const CLI::ExtrasError&) {
        std::cerr << "tvwall-decoder: " << LeftOver(app) << '\n';
        return kExitUsage;
    } catch (const CLI::Error& error) {
        std::cerr << "tvwall-decoder: " << tools::OneLine(tools::OptionFault(error)) << '\n';
        return kExitUsage;
    }
    return std::move(line.options);
}

} // namespace simulated_decoder
