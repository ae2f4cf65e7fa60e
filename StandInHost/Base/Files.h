#pragma once

#include <string>

namespace standin_host {

// The bytes of a file, at most kMaxFile of them. szWhat says in an error what is read: "payload". Throws
// CUsageError.
std::string ReadWholeFile(const std::string& strFile, const char* szWhat);
inline constexpr std::size_t kMaxFile = 64UL * 1024 * 1024;

} // namespace standin_host
