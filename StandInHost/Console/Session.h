#pragma once

#include <optional>
#include <string>

#include "Commands/ConsoleCommands.h"
#include "Console/Progress.h"
#include "Host/Command.h"
#include "Host/HostEvents.h"

namespace standin_host {

class Credentials;
class DecoderLink;
class Output;
class Script;
class SeenWindows;
struct Options;

// The console's session with one decoder: queues commands one at a time, waits for each answer and prints it.
// Belongs to the driving thread.
class Session {
public:
    Session(const Options& options, HostEvents& events, DecoderLink& link, Credentials& credentials,
            Output& output, SeenWindows* windows);

    // Logs in, unless told otherwise or the first command does. Throws ExitError when that fails.
    void Begin(const ConsoleCommand& first);
    // Runs the command, or that script's commands. Returns the gravest status of the session so far. Throws
    // ExitError with it when the session ends early.
    int Run(const ConsoleCommand& command, Script* script);
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
    Next RunScript(Script& script, bool stopOnFailure);
    bool AwaitInput(int descriptor);

    bool Await(const HostCommand& command);
    bool AwaitStep(const HostCommand& command, HostEvents::Clock::time_point& deadline);
    void AwaitEnd(const ConsoleCommand& command, const HostCommand& host);
    void Judge(const ConsoleCommand& command, const HostCommand& host, bool inTime);
    void Fail(int status, const std::string& text, bool ends);
    void NoteLogin(const ConsoleCommand& command, bool good);
    void CheckLost() const;
    void ShowNotifications();
    std::string Where() const;

    const Options& m_options;
    HostEvents& m_events;
    DecoderLink& m_link;
    Credentials& m_credentials;
    Output& m_output;
    SeenWindows* const m_windows; // null: nobody wants to know
    Progress m_progress;
    bool m_loggedIn = false;
    std::size_t m_failures = 0;       // of commands
    int m_status = 0;                 // the gravest status of the commands so far
    const Script* m_script = nullptr; // that the command comes from; null: from none
    std::size_t m_notified = 0;       // notifications that came
};

} // namespace standin_host
