#include <csignal>
#include <exception>
#include <iostream>
#include <optional>
#include <stdexcept>
#include <string>
#include <variant>

#include <asio/io_context.hpp>
#include <asio/signal_set.hpp>
#include <spdlog/cfg/env.h>
#include <spdlog/sinks/stdout_color_sinks.h>
#include <spdlog/spdlog.h>

#include "LogFormatter.h"
#include "Options.h"
#include "Page/PageServer.h"
#include "Server/Device.h"
#include "Server/PcapFile.h"
#include "Server/Server.h"
#include "StopSignals.h"
#include "Tools/Common/AtomicFile.h"
#include "Tools/Common/StandardStreams.h"
#include "Tools/Common/TerminalText.h"

namespace {

using namespace simulated_decoder;

constexpr int kExitFailure = 1;
constexpr int kExitListen = 3;

void SetUpLog()
{
    spdlog::set_default_logger(spdlog::stderr_color_mt("tvwall-decoder"));
    spdlog::set_formatter(LogFormatter());
    spdlog::cfg::load_env_levels();
}

int Complain(const char* what, int status)
{
    std::cerr << "tvwall-decoder: " << tools::OneLine(what) << '\n';
    return status;
}

// As long as the program runs, a hang-up signal makes it reread the channels.
void ReloadOnHangUp(asio::signal_set& hangUps, Device& device, Server& server)
{
    hangUps.async_wait([&](const std::error_code& cancelled, int) {
        if (!cancelled) {
            server.Notify(device.ReloadChannels());
            ReloadOnHangUp(hangUps, device, server);
        }
    });
}

int Run(const Options& options)
{
    asio::io_context context(1);
    // From here on, so that a signal during startup also ends the program cleanly.
    const StopSignals signals(context);
    asio::signal_set hangUps(context, SIGHUP);

    PcapFile capture(options.pcap);
    Device device(options.device);
    Server server(context, device, capture, options.host, options.port);
    std::optional<PageServer> page;
    if (!options.pageHost.empty()) {
        page.emplace(context, device, server, options.pageHost, options.pagePort);
    }
    ReloadOnHangUp(hangUps, device, server);
    if (!options.portFile.empty()) {
        const std::string problem =
            tools::WriteFileAtomically(options.portFile, std::to_string(server.Port()) + '\n');
        if (!problem.empty()) {
            throw std::runtime_error(problem);
        }
    }
    std::cout << "listening on " << server.Where() << std::endl;
    if (page) {
        std::cout << "page at http://" << page->Where() << "/" << std::endl;
    }
    context.run();
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    tools::OpenStandardStreams();
    (void)std::signal(SIGPIPE, SIG_IGN);
    SetUpLog();
    const auto options = ParseOptions(argc, argv);
    if (const int* status = std::get_if<int>(&options)) {
        return *status;
    }
    try {
        return Run(std::get<Options>(options));
    } catch (const ListenError& error) {
        return Complain(error.what(), kExitListen);
    } catch (const std::exception& error) {
        return Complain(error.what(), kExitFailure);
    }
}
