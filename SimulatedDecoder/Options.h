#pragma once
// The command line of the program.

#include <cstdint>
#include <string>
#include <variant>

#include "Server/Device.h"

namespace simulated_decoder {

struct Options {
    std::string host;
    std::uint16_t port = 0; // 0: any free port
    std::string portFile;
    std::string pageHost; // empty: no page
    std::uint16_t pagePort = 0;
    std::string pcap;
    DeviceSettings device;
};

inline constexpr int kExitUsage = 2;

// The options, or the status with which the program ends at once: 0 after --help or --version, kExitUsage
// when the command line, a fault or the password is unusable, with one line on standard error.
std::variant<Options, int> ParseOptions(int argc, const char* const* argv);

} // namespace simulated_decoder
