// Many simulated decoders in one process, each with its own wall and port. Account and keys are shared, so
// that a thousand of them need not wait for two thousand keys.

#include <cstdlib>
#include <exception>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include <asio/io_context.hpp>
#include <spdlog/cfg/env.h>

#include "Options.h"
#include "Server/Device.h"
#include "Server/PcapFile.h"
#include "Server/Server.h"
#include "StopSignals.h"
#include "Tools/Common/Numbers.h"

namespace {

using namespace simulated_decoder;

constexpr std::uint32_t kMaxDecoders = 4096;

struct Decoder {
    Decoder(asio::io_context& context, PcapFile& capture, const Options& options,
            std::shared_ptr<const DeskKeys> keys)
        : device(options.device, std::move(keys)), server(context, device, capture, options.host, 0)
    {
    }

    Device device;
    Server server;
};

void Run(std::uint32_t count, const Options& options)
{
    asio::io_context context(1);
    const StopSignals signals(context);
    PcapFile capture(options.pcap);
    const auto keys = std::make_shared<const DeskKeys>();
    std::vector<std::unique_ptr<Decoder>> decoders;
    for (std::uint32_t i = 0; i < count; ++i) {
        decoders.push_back(std::make_unique<Decoder>(context, capture, options, keys));
    }
    for (const auto& decoder : decoders) {
        std::cout << "listening on " << decoder->server.Where() << '\n';
    }
    std::cout << std::flush;
    context.run();
}

} // namespace

int main(int argc, char** argv)
{
    const auto count = argc < 2 ? std::nullopt : tools::ParseDecimal<std::uint32_t>(argv[1]);
    if (!count || *count < 1 || *count > kMaxDecoders) {
        std::cerr
            << "tvwall-scale-decoders: usage: tvwall-scale-decoders NUMBER [OPTION OF tvwall-decoder...]\n";
        return kExitUsage;
    }
    spdlog::cfg::load_env_levels();
    const auto options = ParseOptions(argc - 1, argv + 1);
    if (const int* status = std::get_if<int>(&options)) {
        return *status;
    }
    try {
        Run(*count, std::get<Options>(options));
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::cerr << "tvwall-scale-decoders: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
