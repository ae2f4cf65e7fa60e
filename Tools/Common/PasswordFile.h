#pragma once

#include <optional>
#include <string>

namespace tools {

// The first line of a password file without its end ("\n" or "\r\n"), from the file's first 4096 bytes.
// Nothing when it cannot be read; errno says why.
std::optional<std::string> ReadPasswordFile(const std::string& path);

} // namespace tools
