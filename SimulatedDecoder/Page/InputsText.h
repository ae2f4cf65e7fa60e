#pragma once

#include <string>

#include "State/DeviceState.h"

namespace simulated_decoder {

// Input channels and channel groups, a JSON object on one line: {"channels": with the windows that poll a
// group of theirs, "groups": with the sub-windows that poll them}. Of windows and of sub-windows only the 20
// highest are named; "more" and "polling", the number of sub-windows, tell of the others.
std::string InputsJson(const DeviceState& state);

} // namespace simulated_decoder
