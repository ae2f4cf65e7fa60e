// tvwall-scale: one host process with many decoders, and the plug-in's cost for each.

#include <array>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <random>

#include <nlohmann/json.hpp>

#include "Base/ExitStatus.h"
#include "DecoderProcess.h"
#include "Host/IoThread.h"
#include "Host/Plugin.h"
#include "LoadNode.h"
#include "ScaleReport.h"
#include "Tools/Common/Hex.h"

namespace {

using namespace scale;
using namespace standin_host;

constexpr char kUser[] = "operator";
// A decoder has a listening and a connected socket; the rest is for files, pipes and libraries.
constexpr std::size_t kDescriptorsPerDecoder = 2;
constexpr std::size_t kOtherDescriptors = 64;

std::string RandomPassword()
{
    std::random_device source;
    std::array<unsigned int, 4> words{};
    for (unsigned int& word : words) {
        word = source();
    }
    return tools::HexText(words.data(), sizeof(words));
}

std::vector<std::string> DecoderArguments(const ScaleOptions& options)
{
    std::vector<std::string> arguments = {
        std::to_string(options.decoders),    "--user", kUser, "--listen", "127.0.0.1:0", "--notify-channels",
        std::to_string(options.channelCount)};
    if (const uint32_t period = options.NotifyPeriod(); period != 0) {
        arguments.insert(arguments.end(), {"--fault", "notify-every=" + std::to_string(period), "--fault",
                                           "notify-burst=" + std::to_string(options.burst)});
    }
    return arguments;
}

// Opened before the run, so that hours of work do not end at an unwritable file.
std::ofstream OpenJsonFile(const std::string& path)
{
    std::ofstream file;
    if (!path.empty()) {
        file.open(path);
        if (!file) {
            throw UsageError("cannot write " + path);
        }
    }
    return file;
}

int Report(const ScaleOptions& options, const ScaleResult& result, std::ofstream& jsonFile)
{
    const nlohmann::json report = ToJson(options, result);
    PrintTable(std::cout, report);
    if (jsonFile.is_open() && !(jsonFile << report.dump(1) << std::endl)) {
        throw UsageError("cannot write " + options.jsonFile);
    }
    const auto complaints = Complaints(options, result);
    for (const std::string& complaint : complaints) {
        std::cerr << "tvwall-scale: " << complaint << '\n';
    }
    if (complaints.empty() && options.soakMinutes) {
        std::cout
            << "verdict: memory, descriptors and threads flat, every command got its own answer, once\n";
    }
    return complaints.empty() ? kExitAllAnswered : kExitCommandFailed;
}

int Run(const ScaleOptions& options)
{
    if (!AllowDescriptors(options.decoders * kDescriptorsPerDecoder + kOtherDescriptors)) {
        throw UsageError("the limit of open descriptors is too low for so many decoders");
    }
    std::ofstream jsonFile = OpenJsonFile(options.jsonFile);
    const std::string password = RandomPassword();
    ::setenv("TVWALL_DECODER_PASSWORD", password.c_str(), 1);
    ::setenv("SPDLOG_LEVEL", "error", 0); // the decoders' log; their refusals are counted here

    HostEvents events;
    IoThread ioThread;
    ioThread.WatchSignals([&events](int signal) { events.Interrupt(signal); });
    const Plugin plugin(options.pluginFile);
    DecoderProcess decoders(options.decoderProgram, DecoderArguments(options));
    const auto ports = decoders.AwaitPorts(options.decoders, events);
    ScaleRun run(options, plugin, ioThread, events);
    run.Run(kUser, password, ports);
    return Report(options, run.Result(), jsonFile);
}

} // namespace

int main(int argc, char** argv)
{
    (void)std::signal(SIGPIPE, SIG_IGN); // a closed pipe shows as a failed write
    try {
        return Run(ParseScaleOptions(argc, argv));
    } catch (const ExitError& error) {
        if (error.Status() == kExitAllAnswered) {
            std::cout << error.what() << '\n';
        } else {
            std::cerr << "tvwall-scale: " << error.what() << '\n';
        }
        return error.Status();
    } catch (const std::exception& error) {
        std::cerr << "tvwall-scale: " << error.what() << '\n';
        return kExitUsage;
    }
}
