// tvwall-scale: one host process with many decoders, and what the plug-in costs for each.

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

constexpr char s_szUser[] = "operator";
// A decoder has a listening and a connected socket; the rest is for files, pipes and libraries.
constexpr std::size_t kDescriptorsPerDecoder = 2;
constexpr std::size_t kOtherDescriptors = 64;

std::string RandomPassword()
{
    std::random_device source;
    std::array<unsigned int, 4> words{};
    for (unsigned int& nWord : words) {
        nWord = source();
    }
    return tools::HexText(words.data(), sizeof(words));
}

std::vector<std::string> DecoderArguments(const SScaleOptions& options)
{
    std::vector<std::string> arguments = {"--user", s_szUser, "--listen", "127.0.0.1:0"};
    arguments.insert(arguments.end(), {"--decoders", std::to_string(options.nDecoders), "--notify-channels",
                                       std::to_string(options.nChannels)});
    if (const uint32_t nPeriod = options.NotifyPeriod(); nPeriod != 0) {
        arguments.insert(arguments.end(), {"--fault", "notify-every=" + std::to_string(nPeriod), "--fault",
                                           "notify-burst=" + std::to_string(options.nBurst)});
    }
    return arguments;
}

// Opened before the run, so that hours of work do not end in a file that cannot be written.
std::ofstream OpenJsonFile(const std::string& strFile)
{
    std::ofstream file;
    if (!strFile.empty()) {
        file.open(strFile);
        if (!file) {
            throw CUsageError("cannot write " + strFile);
        }
    }
    return file;
}

int Report(const SScaleOptions& options, const SScaleResult& result, std::ofstream& jsonFile)
{
    const nlohmann::json report = ToJson(options, result);
    PrintTable(std::cout, report);
    if (jsonFile.is_open() && !(jsonFile << report.dump(1) << std::endl)) {
        throw CUsageError("cannot write " + options.strJsonFile);
    }
    const auto complaints = Complaints(options, result);
    for (const std::string& strComplaint : complaints) {
        std::cerr << "tvwall-scale: " << strComplaint << '\n';
    }
    if (complaints.empty() && options.soakMinutes) {
        std::cout
            << "verdict: memory, descriptors and threads flat, every command got its own answer, once\n";
    }
    return complaints.empty() ? EXIT_ALL_ANSWERED : EXIT_COMMAND_FAILED;
}

int Run(const SScaleOptions& options)
{
    if (!AllowDescriptors(options.nDecoders * kDescriptorsPerDecoder + kOtherDescriptors)) {
        throw CUsageError("the limit of open descriptors is too low for so many decoders");
    }
    std::ofstream jsonFile = OpenJsonFile(options.strJsonFile);
    const std::string strPassword = RandomPassword();
    ::setenv("TVWALL_DECODER_PASSWORD", strPassword.c_str(), 1);
    ::setenv("SPDLOG_LEVEL", "error", 0); // the decoders' log: what they refuse is counted here

    CHostEvents events;
    CIoThread ioThread;
    ioThread.WatchSignals([&events](int nSignal) { events.Interrupt(nSignal); });
    const CPlugin plugin(options.strPluginFile);
    CDecoderProcess decoders(options.strDecoderProgram, DecoderArguments(options));
    const auto ports = decoders.AwaitPorts(options.nDecoders, events);
    CScaleRun run(options, plugin, ioThread, events);
    run.Run(s_szUser, strPassword, ports);
    return Report(options, run.Result(), jsonFile);
}

} // namespace

int main(int argc, char** argv)
{
    (void)std::signal(SIGPIPE, SIG_IGN); // a closed pipe shows as a failed write
    try {
        return Run(ParseScaleOptions(argc, argv));
    } catch (const CExitError& error) {
        if (error.Status() == EXIT_ALL_ANSWERED) {
            std::cout << error.what() << '\n';
        } else {
            std::cerr << "tvwall-scale: " << error.what() << '\n';
        }
        return error.Status();
    } catch (const std::exception& error) {
        std::cerr << "tvwall-scale: " << error.what() << '\n';
        return EXIT_USAGE;
    }
}
