#pragma once

#include <optional>
#include <string>

namespace standin_host {

// The bytes of a file, at most kMaxFile of them. what names the content in an error, such as "payload".
// Throws UsageError.
std::string ReadWholeFile(const std::string& path, const char* what);
inline constexpr std::size_t kMaxFile = 64UL * 1024 * 1024;

// The same for a file of the user's own, or the system's: one that others own or may write is refused.
// Nothing when there is no such file.
std::optional<std::string> ReadOwnFile(const std::string& path, const char* what);

} // namespace standin_host
