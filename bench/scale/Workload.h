#pragma once

#include <cstdint>
#include <vector>

namespace scale {

struct SStep {
    unsigned int nCmdID;
    std::vector<uint8_t> payload;
};

// A round of commands for one wall of at least 2 x 2 screens, one of each kind: windows, sound, channel
// groups, playback. It leaves the wall as it was.
std::vector<SStep> RoundOfCommands();

} // namespace scale
