#pragma once
// What the page is told, each a JSON object in one line. No account is in any of it.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Server/Connection.h"
#include "Server/Device.h"

namespace simulated_decoder {

// What never changes: {"name", "version", "faults": what can be made to go wrong, "urls": with which
// requests}.
std::string AboutJson(const Device& device);

// The screens and all windows from the lowest layer to the highest. So that a wall of thousands is told in a
// moment, only those windows that a picture of the wall draws with their sub-windows have "cells" here.
std::string WallJson(const DeviceState& state);

// One window with all of its cells; nothing when there is none with this id.
std::optional<std::string> WindowJson(const DeviceState& state, std::uint32_t id);

// Hosts, last requests and active faults.
std::string ActivityJson(const Device& device, const std::vector<HostStatus>& hosts);

} // namespace simulated_decoder
