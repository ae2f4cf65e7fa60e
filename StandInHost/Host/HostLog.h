#pragma once

#include <string>
#include <string_view>

namespace standin_host {

// Severity, most severe first. The plug-in's three outputs are Abnormal, Normal and Debug.
enum class LogLevel { Off, Error, Abnormal, Normal, Debug };

// Sends the process's log to a file, or to standard error when the path is empty, and drops messages less
// severe than the level. Call before other threads log; until then Abnormal and above go to standard error.
// Throws UsageError when the file cannot be written.
void OpenLog(LogLevel level, const std::string& path);

// Any thread. The plug-in's texts may quote the decoder, so every message becomes one printable line.
void Log(LogLevel level, std::string_view text);

} // namespace standin_host
