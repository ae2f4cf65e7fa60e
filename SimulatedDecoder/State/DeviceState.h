#pragma once

#include <cstdint>
#include <string>

#include "State/ChannelGroups.h"
#include "State/InputChannels.h"
#include "State/SourceAccounts.h"
#include "State/Wall.h"

namespace simulated_decoder {

// Everything that requests read or change.
struct DeviceState {
    std::string name; // of the device, for whoever operates it
    Wall wall;
    ChannelGroups groups{};
    InputChannels channels{};
    SourceAccounts sources{};

    // Increases whenever something shown in the pictures changes.
    std::uint64_t PictureRevision() const { return wall.Revision() + groups.Revision(); }
};

} // namespace simulated_decoder
