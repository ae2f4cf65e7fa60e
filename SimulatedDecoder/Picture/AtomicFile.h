#pragma once

#include <string>
#include <string_view>

namespace simulated_decoder {

// Writes the file under a passing name beside it, which nobody can foresee, and renames it, so that a reader
// sees the old content or the new one, never a part. What is no regular file (a device, a pipe, a link) is
// written in place. Empty when that went well, else why not, in one line.
std::string WriteFileAtomically(const std::string& path, std::string_view content);

} // namespace simulated_decoder
