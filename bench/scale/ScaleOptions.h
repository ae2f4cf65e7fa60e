#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace scale {

struct ScaleOptions {
    uint32_t decoders = 10;
    double rate = 1;            // commands per second to each decoder
    double notify = 1;          // notifications per second from each decoder; 0: none
    uint32_t burst = 1;         // notifications sent at once
    uint32_t channelCount = 16; // channels in a notification

    // Milliseconds between two bursts, at least 1; 0 when there are none.
    uint32_t NotifyPeriod() const;

    std::chrono::duration<double> loadTime{20};
    std::optional<double> soakMinutes; // length of the soak, judged at its end
    std::chrono::duration<double> sampleEvery{5};
    std::string pluginFile;
    std::string decoderProgram;
    std::string jsonFile;
};

// Reads the command line. Throws UsageError, or ExitError with status 0 and the text to print when help or
// the version was asked for.
ScaleOptions ParseScaleOptions(int argc, const char* const* argv);

} // namespace scale
