#pragma once

#include <cstdint>
#include <vector>

namespace scale {

struct SStep {
    unsigned int nCmdID;
    std::vector<uint8_t> payload;
};

// A round of commands for one wall of 2 x 2 screens: windows, media, playback, sound, channel groups. The
// decoder accepts all of them, and at the end the wall is as it was.
std::vector<SStep> RoundOfCommands();

} // namespace scale
