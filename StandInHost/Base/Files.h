#pragma once

#include <string>

namespace standin_host {

// The bytes of a file, at most kMaxFile of them. what names the content in an error, such as "payload".
// Throws UsageError.
std::string ReadWholeFile(const std::string& path, const char* what);
inline constexpr std::size_t kMaxFile = 64UL * 1024 * 1024;

} // namespace standin_host
