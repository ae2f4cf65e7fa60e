#pragma once

#include <string>

#include "Commands/ConsoleCommands.h"
#include "Console/Progress.h"
#include "Host/HostEvents.h"

namespace standin_host {

class CCredentials;
class CDecoderLink;
class CHostCommand;
class CLineInput;
class COutput;
struct SOptions;

// The console's session with one decoder: queues commands one after the other, waits for each answer and
// prints it. Belongs to the driving thread.
class CSession {
public:
    CSession(const SOptions& options, CHostEvents& events, CDecoderLink& link, CCredentials& credentials,
             COutput& output);

    // Logs in, unless told otherwise or the first command does. Throws CExitError when that fails.
    void Begin(const SConsoleCommand& first);
    // Runs the command; pScript holds the lines of a script. Returns the gravest status of the session so
    // far. Throws CExitError for what ends the session early.
    int Run(const SConsoleCommand& command, CLineInput* pScript);
    // As far as the answers tell.
    bool LoggedIn() const { return m_bLoggedIn; }
    // Prints what the decoder has told in the meantime.
    void PrintNotifications();

private:
    enum class ENext { GoOn, End };

    ENext Execute(const SConsoleCommand& command);
    void Login();
    void Request(const SConsoleCommand& command);
    ENext Watch(const SConsoleCommand& command);
    void RunScript(CLineInput& script);
    bool NextLine(CLineInput& script, std::string& strLine);

    bool Await(const CHostCommand& command);
    bool AwaitStep(const CHostCommand& command, CHostEvents::Clock::time_point& deadline);
    void AwaitEnd(const SConsoleCommand& command, const CHostCommand& host);
    void Judge(const SConsoleCommand& command, const CHostCommand& host, bool bInTime);
    void NoteLogin(const SConsoleCommand& command, bool bGood);
    void CheckInterrupted() const;
    void CheckLost() const;
    void CheckOutput() const;
    void Complain(const SConsoleCommand& command, int nStatus, const std::string& strText);
    std::string Where() const;

    const SOptions& m_options;
    CHostEvents& m_events;
    CDecoderLink& m_link;
    CCredentials& m_credentials;
    COutput& m_output;
    CProgress m_progress;
    bool m_bLoggedIn = false;
    int m_nStatus = 0;           // the gravest status of the commands so far
    std::size_t m_nLine = 0;     // line of the script, 0 outside of one
    std::size_t m_nNotified = 0; // notifications printed
};

} // namespace standin_host
