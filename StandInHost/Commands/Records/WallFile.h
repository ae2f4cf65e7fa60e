#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Commands/Records/Media.h"

namespace standin_host {

// The format of a wall file, for help texts.
inline constexpr char kWallFileHelp[] = R"(JSON file with the whole wall:
{"windows": [{"id": 1, "x": 0, "y": 0, "width": 960, "height": 540, "layer": 0, "mode": 4,
  "subWindows": [{"index": 0, "osd": 101,
    "media": {"address": "192.0.2.10", "port": 554, "channel": 1, "user": "viewer", "password": "...",
              "type": 0, "requestMode": 6, "streamType": 0, "begin": 0, "end": 0}}]}]}
Only id, the rectangle, index, address, port and channel are required; channel is a number or a GUID)";

// The windows that a file describes. A source with a user and no password of its own gets password, if there
// is one, or is marked as missing it.
// Throws UsageError that names the place of the fault and repeats no value of the file.
std::vector<WallWindow> ReadWallFile(const std::string& path, const std::optional<std::string>& password);

} // namespace standin_host
