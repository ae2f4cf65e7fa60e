#pragma once

#include <cstdint>
#include <string>

#include "State/ChannelGroups.h"
#include "State/InputChannels.h"
#include "State/SourceAccounts.h"
#include "State/Wall.h"

namespace simulated_decoder {

// All that requests ask for or change.
struct DeviceState {
    std::string name; // of the device, for whoever looks after it
    Wall wall;
    ChannelGroups groups{};
    InputChannels channels{};
    SourceAccounts sources{};

    // Grows whenever something changes that the pictures show.
    std::uint64_t PictureRevision() const { return wall.Revision() + groups.Revision(); }
};

} // namespace simulated_decoder
