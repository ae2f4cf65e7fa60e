#pragma once

#include <chrono>
#include <string>

#include "Commands/ConsoleCommands.h"
#include "Host/HostLog.h"
#include "HostTypes.h"

namespace standin_host {

// What the command line says.
struct SOptions {
    std::string strPluginFile;
    std::string strHost;
    std::string strPort;
    std::string strUser;
    std::string strPasswordFile;
    bool bJson = false;
    bool bTrace = false;
    bool bBufferedReceive = false;
    bool bLogin = true;
    std::chrono::milliseconds answerTimeout{};
    GUID nodeID{};
    ELogLevel logLevel = ELogLevel::Abnormal;
    std::string strLogFile;
    SConsoleCommand command;
};

// Reads the command line. Throws CUsageError, or CExitError with status 0 and the text to print when help or
// the version was asked for.
SOptions ParseOptions(int argc, const char* const* argv);

} // namespace standin_host
