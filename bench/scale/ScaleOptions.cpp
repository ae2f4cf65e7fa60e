#include "ScaleOptions.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

#include <CLI/CLI.hpp>

#include "Base/ExitStatus.h"
#include "Host/Plugin.h"

namespace scale {

using standin_host::ExitError;
using standin_host::UsageError;

namespace {

constexpr char kDescription[] =
    "Runs many decoders in one host process and reports what the plug-in costs for each of them.";

constexpr char kFooter[] =
    R"(The decoders are simulated, in one process of their own; each has its port and its wall.

Examples:
  tvwall-scale --decoders 1000 --seconds 30 --json 1000.json
  tvwall-scale --decoders 100 --soak 30 --rate 2 --json soak.json
  tvwall-scale --decoders 4 --seconds 15 --rate 9 --notify 100 --burst 50

Exit status: 0 every command got one answer, its own (and a soak found memory and descriptors flat), 1 not so, 2 wrong
usage or no usable plug-in, 3 the decoders do not come up or a connection was lost; 128 + n after signal n.)";

std::string DefaultDecoderProgram()
{
    namespace fs = std::filesystem;
    std::error_code ignored;
    const fs::path folder = fs::read_symlink("/proc/self/exe", ignored).parent_path();
    return folder / "tvwall-scale-decoders";
}

struct Times {
    double seconds;
    double soakMinutes; // 0: no soak
    double sampleEvery;
};

void AddLoad(CLI::App& app, ScaleOptions& options)
{
    app.add_option("--decoders", options.decoders, "how many")
        ->check(CLI::Range(1, 4096))
        ->capture_default_str();
    app.add_option("--rate", options.rate, "commands a second for each decoder; a session runs 9 at most")
        ->check(CLI::Range(0.01, 9.0))
        ->capture_default_str();
    app.add_option("--notify", options.notify, "notifications a second of each decoder; 0: none")
        ->type_name("RATE")
        ->check(CLI::Range(0.0, 100000.0))
        ->capture_default_str();
    app.add_option("--burst", options.burst, "of these at once")
        ->type_name("N")
        ->check(CLI::Range(1, 1000))
        ->capture_default_str();
    app.add_option("--channels", options.channelCount, "channels in each notification")
        ->check(CLI::Range(1, 256))
        ->capture_default_str();
}

void AddTimes(CLI::App& app, Times& times)
{
    auto* seconds = app.add_option("--seconds", times.seconds,
                                   "how long commands are sent, before each decoder ends its round of them")
                        ->type_name("S")
                        ->check(CLI::Range(0.1, 86400.0))
                        ->capture_default_str();
    app.add_option("--soak", times.soakMinutes, "the same in minutes, with samples and a verdict")
        ->type_name("MINUTES")
        ->check(CLI::Range(0.1, 10080.0))
        ->excludes(seconds);
    app.add_option("--sample-every", times.sampleEvery, "seconds between two samples of a soak")
        ->type_name("S")
        ->check(CLI::Range(0.1, 3600.0))
        ->capture_default_str();
}

void AddFiles(CLI::App& app, ScaleOptions& options)
{
    app.add_option("--json", options.jsonFile, "write all figures to this file")->type_name("FILE");
    app.add_option("--plugin", options.pluginFile, "the plug-in library (default: of this build)")
        ->type_name("FILE");
    app.add_option("--decoder-program", options.decoderProgram,
                   "tvwall-scale-decoders (default: of this build)")
        ->type_name("FILE");
}

void Parse(CLI::App& app, int argc, const char* const* argv)
{
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForVersion& version) {
        throw ExitError(standin_host::kExitAllAnswered, version.what());
    } catch (const CLI::CallForHelp&) {
        throw ExitError(standin_host::kExitAllAnswered, app.help());
    } catch (const CLI::Error& error) {
        throw UsageError(error.what());
    }
}

} // namespace

uint32_t ScaleOptions::NotifyPeriod() const
{
    constexpr double kDay = 24.0 * 3600 * 1000; // the decoder's longest period
    return notify == 0 ? 0 : static_cast<uint32_t>(std::lround(std::min(1000 * burst / notify, kDay)));
}

ScaleOptions ParseScaleOptions(int argc, const char* const* argv)
{
    ScaleOptions options;
    Times times{options.loadTime.count(), 0, options.sampleEvery.count()};
    CLI::App app(kDescription, "tvwall-scale");
    AddLoad(app, options);
    AddTimes(app, times);
    AddFiles(app, options);
    app.set_version_flag("--version", "tvwall-scale " TVWALL_VERSION);
    app.footer(kFooter);
    Parse(app, argc, argv);
    for (const double number :
         {options.rate, options.notify, times.seconds, times.soakMinutes, times.sampleEvery}) {
        if (std::isnan(number)) {
            throw UsageError("an option takes a number");
        }
    }
    if (options.notify > 1000.0 * options.burst) {
        throw UsageError("a decoder notifies at most 1000 times a second: more at once with --burst");
    }
    options.loadTime = std::chrono::duration<double>(times.seconds);
    options.sampleEvery = std::chrono::duration<double>(times.sampleEvery);
    if (times.soakMinutes != 0) {
        options.soakMinutes = times.soakMinutes;
        options.loadTime = std::chrono::duration<double, std::ratio<60>>(times.soakMinutes);
    }
    if (options.pluginFile.empty()) {
        options.pluginFile = standin_host::DefaultPluginFile();
    }
    if (options.decoderProgram.empty()) {
        options.decoderProgram = DefaultDecoderProgram();
    }
    return options;
}

} // namespace scale
