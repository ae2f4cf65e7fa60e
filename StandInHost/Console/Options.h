#pragma once

#include <chrono>
#include <string>

#include "Base/Profiles.h"
#include "Commands/ConsoleCommands.h"
#include "Commands/Records/DeviceCodes.h"
#include "Host/HostLog.h"
#include "HostTypes.h"

namespace standin_host {

// The parsed command line.
struct Options {
    std::string pluginFile;
    std::string host;
    std::string port;
    std::string user;
    std::string passwordFile;
    Profile given;    // what options and environment say
    Profile settings; // that, and the profile where it says nothing
    bool json = false;
    bool quiet = false;  // prints failures only
    bool dryRun = false; // prints commands instead of sending them; host and user may then be empty
    bool trace = false;
    bool bufferedReceive = false;
    bool login = true;
    std::chrono::milliseconds answerTimeout{};
    GUID nodeID{};
    LogLevel logLevel = LogLevel::Abnormal;
    std::string logFile;
    DeviceCodes deviceCodes;
    ConsoleCommand command;
};

// Reads the command line. Throws UsageError, or ExitError with status 0 and the text to print when help or
// the version was asked for.
Options ParseOptions(int argc, const char* const* argv);

// Puts other settings in place: whom to connect to, as whom, with which files. Throws UsageError when they do
// not do for it.
void UseSettings(const Profile& settings, Options& options);

} // namespace standin_host
