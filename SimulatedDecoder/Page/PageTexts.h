#pragma once
// What the page is told, each a JSON object in one line. No account is in any of it.

#include <string>
#include <vector>

#include "Picture/WallView.h"
#include "Server/Connection.h"
#include "Server/Device.h"

namespace simulated_decoder {

// What never changes: {"name", "version", "faults": what can be made to go wrong, "urls": with which
// requests}.
std::string AboutJson(const Device& device);

// The screens and all windows from the lowest layer to the highest. Only those that are seen with their
// sub-windows have "cells".
std::string WallJson(const WallView& view);
std::string WindowJson(const WindowView& view);

// Hosts, last requests and active faults.
std::string ActivityJson(const Device& device, const std::vector<HostStatus>& hosts);

} // namespace simulated_decoder
