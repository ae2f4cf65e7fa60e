#pragma once

#include <functional>
#include <memory>
#include <string>

#include "Commands/ConsoleCommands.h"
#include "Host/Command.h"
#include "Host/HostEvents.h"

namespace standin_host {

class Backoff;
class Credentials;
class DecoderLink;
class Output;
class Script;
class SeenWindows;
struct Options;

// Connects and makes a link, by that time at the latest. Throws ExitError, with status 128 + n after a
// signal.
using LinkOpener = std::function<std::unique_ptr<DecoderLink>(HostEvents::Clock::time_point until)>;

// The console's session with one decoder: queues commands one at a time, waits for each answer and prints it.
// A lost link ends it, except while it watches and shall come back: then it opens another link, with a new
// processor of the plug-in. Belongs to the driving thread.
class Session {
public:
    // Begins with this link; a watch may open others.
    Session(const Options& options, HostEvents& events, LinkOpener openLink,
            std::unique_ptr<DecoderLink> link, Credentials& credentials, Output& output,
            SeenWindows* windows);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

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
    Next WatchUntil(const ConsoleCommand& command);
    void ComeBack(Backoff* backoff);
    bool Pause(std::chrono::milliseconds time);
    bool Attempt(const std::function<void()>& step);
    void Reopen(bool login);
    void AskForChannels();
    Next RunScript(Script& script, bool stopOnFailure);
    bool AwaitInput(int descriptor);

    bool Await(const ConsoleCommand& command, const HostCommand& host);
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
    const LinkOpener m_openLink;
    std::unique_ptr<DecoderLink> m_link; // null only while the link is lost
    Credentials& m_credentials;
    Output& m_output;
    SeenWindows* const m_windows; // null: nobody wants to know
    bool m_loggedIn = false;
    std::size_t m_failures = 0;       // of commands
    int m_status = 0;                 // the gravest status of the commands so far
    const Script* m_script = nullptr; // that the command comes from; null: from none
    std::size_t m_notified = 0;       // notifications that were taken
    HostEvents::Clock::time_point m_until = HostEvents::Clock::time_point::max(); // no wait is longer
    bool m_comingBack = false; // nobody asked for what is done: only what matters is told
    bool m_holdNotifications = false;
};

} // namespace standin_host
