#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace scale {

// One command and its only correct answer.
struct Step {
    unsigned int cmdID;
    std::vector<uint8_t> payload;
    std::optional<std::vector<uint8_t>> answer; // its bytes; none when the decoder must refuse the command
};

// A round of commands for one wall of 2 x 2 screens: windows, media, playback, sound, channel groups. At the
// end the wall is as it was. Values set and read back are named after the round, so that different rounds
// have different answers; window ids repeat after 30,000 rounds.
std::size_t CommandsOfARound();
// Command index of the round, below CommandsOfARound().
Step CommandOfRound(std::size_t index, uint32_t round);

} // namespace scale
