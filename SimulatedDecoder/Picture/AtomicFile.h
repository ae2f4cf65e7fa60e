#pragma once

#include <string>
#include <string_view>

namespace simulated_decoder {

// Writes a temporary file of unpredictable name beside the target and renames it, so that a reader sees the
// old content or the new, never a part. Anything but a regular file (a device, a pipe, a link) is written in
// place. Returns an empty string on success, else a one-line reason.
std::string WriteFileAtomically(const std::string& path, std::string_view content);

} // namespace simulated_decoder
