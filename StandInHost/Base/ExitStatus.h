#pragma once

#include <stdexcept>
#include <string>

namespace standin_host {

enum ExitStatus : int {
    kExitAllAnswered = 0,
    kExitCommandFailed = 1,
    kExitUsage = 2,
    kExitConnection = 3,
    kExitNoAnswer = 4,
    kExitLoginRefused = 5,
    kExitSignalBase = 128, // plus the signal's number, as shells expect
};

// What each status means. Help and manual page print this table, and docs/tools.md is held to it.
struct ExitMeaning {
    ExitStatus status;
    int gravity; // several failures end the program with the gravest; a signal outweighs them all
    const char* meaning;
};
inline constexpr ExitMeaning kExitMeanings[] = {
    {kExitAllAnswered, 0, "all done; a shell on a terminal has ended"},
    {kExitCommandFailed, 1, "a command was refused"},
    {kExitUsage, 5, "wrong use, or no usable plug-in"},
    {kExitConnection, 3, "not connected, or the link was lost, also in the middle of a command"},
    {kExitNoAnswer, 2, "no reply in time"},
    {kExitLoginRefused, 4, "login refused"},
    {kExitSignalBase, 6, "ended by signal n; watch ends with 0 at SIGINT"},
};

// The graver of two exit statuses.
int Graver(int one, int other);

// The table in lines of "  STATUS  MEANING", and which of several failures counts; ends without a line end.
std::string ExitStatusTable();

// Ends the program with one line on standard error, or none when the text is empty: all has been said.
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
