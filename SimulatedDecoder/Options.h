#pragma once
// The command line of the program.

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

#include "Server/Faults.h"

namespace simulated_decoder {

struct Options {
    std::string host;
    std::uint16_t port = 0; // 0: any free one
    std::string portFile;
    std::string pageHost; // empty: no page
    std::uint16_t pagePort = 0;
    std::string user = "admin";
    std::string password;
    int rows = 2;
    int columns = 2;
    std::uint32_t decoders = 1;      // each with a wall of its own, on successive ports from `port` on
    std::int32_t notifyChannels = 0; // in each notification of the fault; 0: by turns 1 to 256
    std::optional<std::uint32_t> notifySeq = 1000000; // of the first notification; nothing: all have none
    std::string name = "tvwall-decoder";              // of the device
    std::string channels;                             // the file
    std::string sourceAccounts;                       // the file
    std::string wallSvg;
    std::string wallText;
    std::string jsonLog;
    std::string pcap;
    Faults faults;
};

inline constexpr int kExitUsage = 2;

// The options, or the status with which the program ends at once: 0 after --help or --version, kExitUsage
// when the command line, a fault or the password is not usable, with one line on standard error.
std::variant<Options, int> ParseOptions(int argc, const char* const* argv);

} // namespace simulated_decoder
