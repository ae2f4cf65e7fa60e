#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace scale {

struct SScaleOptions {
    uint32_t nDecoders = 10;
    double dRate = 1;             // commands a second for each decoder
    uint32_t nNotifyEvery = 1000; // milliseconds between two notifications of a decoder; 0: none
    uint32_t nChannels = 16;      // that a notification tells of
    std::chrono::duration<double> loadTime{20};
    std::optional<double> soakMinutes; // judged when it is over
    std::chrono::duration<double> sampleEvery{5};
    std::string strPluginFile;
    std::string strDecoderProgram;
    std::string strJsonFile;
};

// Reads the command line. Throws CUsageError, or CExitError with status 0 and the text to print when help or
// the version was asked for.
SScaleOptions ParseScaleOptions(int argc, const char* const* argv);

} // namespace scale
