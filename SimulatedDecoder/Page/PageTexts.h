#pragma once
// The texts sent to the page, each a JSON object on one line. None contains an account.

#include <string>
#include <vector>

#include "Picture/WallView.h"
#include "Server/Connection.h"
#include "Server/Device.h"

namespace simulated_decoder {

// What never changes: {"name", "version", "exposed": the page listens on more than loopback, "faults": the
// available faults, "urls": the requests they can affect}.
std::string AboutJson(const Device& device, bool exposed);

// The screens and all windows, lowest layer first. Only windows drawn with their sub-windows have "cells".
std::string WallJson(const WallView& view);
std::string WindowJson(const WindowView& view);

// Hosts, latest requests and active faults.
std::string ActivityJson(const Device& device, const std::vector<HostStatus>& hosts);
// The texts of one request and its reply, each {"text", "length": of all of it, in bytes, "kept": as much of
// it as "text" has}; the reply is null if none was sent.
std::string RequestJson(const PastRequest& past);

} // namespace simulated_decoder
