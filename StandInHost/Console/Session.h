#pragma once

#include <string>

#include "Commands/ConsoleCommands.h"
#include "Console/Progress.h"
#include "Host/HostEvents.h"

namespace standin_host {

class Credentials;
class DecoderLink;
class HostCommand;
class LineInput;
class Output;
struct Options;

// The console's session with one decoder: queues commands one at a time, waits for each answer and prints it.
// Belongs to the driving thread.
class Session {
public:
    Session(const Options& options, HostEvents& events, DecoderLink& link, Credentials& credentials,
            Output& output);

    // Logs in, unless told otherwise or the first command does. Throws ExitError when that fails.
    void Begin(const ConsoleCommand& first);
    // Runs the command; scriptInput holds the lines of a script. Returns the worst status of the session so
    // far. Throws ExitError when the session ends early.
    int Run(const ConsoleCommand& command, LineInput* scriptInput);
    // As far as the answers show.
    bool LoggedIn() const { return m_loggedIn; }
    // Prints the notifications that have come in the meantime.
    void PrintNotifications();

private:
    enum class Next { GoOn, End };

    Next Execute(const ConsoleCommand& command);
    void Login();
    void Request(const ConsoleCommand& command);
    Next Watch(const ConsoleCommand& command);
    void RunScript(LineInput& script);
    bool NextLine(LineInput& script, std::string& line);

    bool Await(const HostCommand& command);
    bool AwaitStep(const HostCommand& command, HostEvents::Clock::time_point& deadline);
    void AwaitEnd(const ConsoleCommand& command, const HostCommand& host);
    void Judge(const ConsoleCommand& command, const HostCommand& host, bool inTime);
    void NoteLogin(const ConsoleCommand& command, bool good);
    void CheckInterrupted() const;
    void CheckLost() const;
    void CheckOutput() const;
    void Complain(const ConsoleCommand& command, int status, const std::string& text);
    std::string Where() const;

    const Options& m_options;
    HostEvents& m_events;
    DecoderLink& m_link;
    Credentials& m_credentials;
    Output& m_output;
    Progress m_progress;
    bool m_loggedIn = false;
    int m_status = 0;           // the worst status of the commands so far
    std::size_t m_line = 0;     // line of the script, 0 outside one
    std::size_t m_notified = 0; // notifications printed
};

} // namespace standin_host
