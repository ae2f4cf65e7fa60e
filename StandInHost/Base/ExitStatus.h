#pragma once

#include <stdexcept>
#include <string>

namespace standin_host {

// Exit status. A session ended by a signal has 128 plus the signal's number, as shells expect.
enum ExitStatus : int {
    kExitAllAnswered = 0,
    kExitCommandFailed = 1, // a command was answered with a failure
    kExitUsage = 2,         // bad usage, or the plug-in cannot be loaded
    kExitConnection = 3,    // cannot connect, or the connection was lost
    kExitNoAnswer = 4,
    kExitLoginRefused = 5,
    kExitSignalBase = 128,
};

// Ends the program with one line on standard error.
class ExitError : public std::runtime_error {
public:
    ExitError(int status, const std::string& text) : std::runtime_error(text), m_status(status) {}
    int Status() const { return m_status; }

private:
    int m_status;
};

// The input cannot be understood; the text says what and where.
class UsageError : public ExitError {
public:
    explicit UsageError(const std::string& text) : ExitError(kExitUsage, text) {}
};

} // namespace standin_host
