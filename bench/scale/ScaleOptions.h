#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace scale {

struct SScaleOptions {
    uint32_t nDecoders = 10;
    double dRate = 1;        // commands a second for each decoder
    double dNotify = 1;      // notifications a second of each decoder; 0: none
    uint32_t nBurst = 1;     // of these at once
    uint32_t nChannels = 16; // that a notification tells of

    // Milliseconds between two bursts, at least 1; 0 when there are none.
    uint32_t NotifyPeriod() const;

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
