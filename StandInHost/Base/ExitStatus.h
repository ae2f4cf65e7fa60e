#pragma once

#include <stdexcept>
#include <string>

namespace standin_host {

// How the program ends. A session that a signal ends has 128 plus the signal's number, as shells expect.
enum EExitStatus : int {
    EXIT_ALL_ANSWERED = 0,
    EXIT_COMMAND_FAILED = 1, // a command was answered with a failure
    EXIT_USAGE = 2,          // wrong usage, or the plug-in cannot be loaded
    EXIT_CONNECTION = 3,     // cannot connect, or the connection was lost
    EXIT_NO_ANSWER = 4,
    EXIT_LOGIN_REFUSED = 5,
    EXIT_SIGNAL_BASE = 128,
};

// Ends the program with one line on standard error.
class CExitError : public std::runtime_error {
public:
    CExitError(int nStatus, const std::string& strText) : std::runtime_error(strText), m_nStatus(nStatus) {}
    int Status() const { return m_nStatus; }

private:
    int m_nStatus;
};

// What was asked for cannot be read; the text says what and where.
class CUsageError : public CExitError {
public:
    explicit CUsageError(const std::string& strText) : CExitError(EXIT_USAGE, strText) {}
};

} // namespace standin_host
