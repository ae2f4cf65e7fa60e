#include "ScaleOptions.h"

#include <cmath>
#include <filesystem>

#include <CLI/CLI.hpp>

#include "ExitStatus.h"
#include "Plugin.h"

namespace scale {

using standin_host::CExitError;
using standin_host::CUsageError;

namespace {

constexpr char s_szDescription[] =
    "Runs many decoders in one host process and reports what the plug-in costs for each of them.";

constexpr char s_szFooter[] =
    R"(The decoders are simulated, in one process of their own; each has its port and its wall.

Examples:
  tvwall-scale --decoders 1000 --seconds 30 --json 1000.json
  tvwall-scale --decoders 100 --soak 30 --rate 2 --json soak.json

Exit status: 0 every command was answered once (and a soak found memory and descriptors flat), 1 not so, 2 wrong
usage or no usable plug-in, 3 the decoders do not come up or a connection was lost; 128 + n after signal n.)";

std::string DefaultDecoderProgram()
{
    namespace fs = std::filesystem;
    std::error_code ignored;
    const fs::path folder = fs::read_symlink("/proc/self/exe", ignored).parent_path().parent_path();
    return folder / "SimulatedDecoder" / "tvwall-decoder";
}

} // namespace

SScaleOptions ParseScaleOptions(int argc, const char* const* argv)
{
    SScaleOptions options;
    double dSeconds = options.loadTime.count();
    double dSampleEvery = options.sampleEvery.count();
    double dSoakMinutes = 0;
    CLI::App app(s_szDescription, "tvwall-scale");
    app.set_version_flag("--version", "tvwall-scale " TVWALL_VERSION);
    app.add_option("--decoders", options.nDecoders, "how many")
        ->check(CLI::Range(1, 4096))
        ->capture_default_str();
    app.add_option("--rate", options.dRate, "commands a second for each decoder; a session runs 9 at most")
        ->check(CLI::Range(0.01, 9.0))
        ->capture_default_str();
    app.add_option("--notify-every", options.nNotifyEvery,
                   "milliseconds between two notifications of a decoder; 0: none")
        ->type_name("MS")
        ->check(CLI::Range(0, 3600000))
        ->capture_default_str();
    app.add_option("--channels", options.nChannels, "channels in each notification")
        ->check(CLI::Range(1, 256))
        ->capture_default_str();
    auto* pSeconds = app.add_option("--seconds", dSeconds, "how long commands are sent")
                         ->type_name("S")
                         ->check(CLI::Range(0.1, 86400.0))
                         ->capture_default_str();
    auto* pSoak = app.add_option("--soak", dSoakMinutes, "the same in minutes, with samples and a verdict")
                      ->type_name("MINUTES")
                      ->check(CLI::Range(0.1, 10080.0))
                      ->excludes(pSeconds);
    app.add_option("--sample-every", dSampleEvery, "seconds between two samples of a soak")
        ->type_name("S")
        ->check(CLI::Range(0.1, 3600.0))
        ->capture_default_str();
    app.add_option("--json", options.strJsonFile, "write all figures to this file")->type_name("FILE");
    app.add_option("--plugin", options.strPluginFile, "the plug-in library (default: of this build)")
        ->type_name("FILE");
    app.add_option("--decoder-program", options.strDecoderProgram,
                   "the simulated decoder (default: of this build)")
        ->type_name("FILE");
    app.footer(s_szFooter);
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForVersion& version) {
        throw CExitError(standin_host::EXIT_ALL_ANSWERED, version.what());
    } catch (const CLI::CallForHelp&) {
        throw CExitError(standin_host::EXIT_ALL_ANSWERED, app.help());
    } catch (const CLI::Error& error) {
        throw CUsageError(error.what());
    }
    if (std::isnan(options.dRate) || std::isnan(dSeconds) || std::isnan(dSampleEvery) ||
        std::isnan(dSoakMinutes)) {
        throw CUsageError("an option takes a number");
    }
    options.loadTime = std::chrono::duration<double>(dSeconds);
    options.sampleEvery = std::chrono::duration<double>(dSampleEvery);
    if (pSoak->count() != 0) {
        options.soakMinutes = dSoakMinutes;
        options.loadTime = std::chrono::duration<double, std::ratio<60>>(dSoakMinutes);
    }
    if (options.strPluginFile.empty()) {
        options.strPluginFile = standin_host::DefaultPluginFile();
    }
    if (options.strDecoderProgram.empty()) {
        options.strDecoderProgram = DefaultDecoderProgram();
    }
    return options;
}

} // namespace scale
