#include "Console/Session.h"

#include <algorithm>
#include <csignal>
#include <utility>

#include "Base/ErrorLines.h"
#include "Base/ExitStatus.h"
#include "Base/LineInput.h"
#include "Commands/Records/Credentials.h"
#include "Commands/Records/Payloads.h"
#include "Console/AnswerText.h"
#include "Console/Options.h"
#include "Console/Output.h"
#include "Console/WordSplitting.h"
#include "Host/Command.h"
#include "Host/DecoderLink.h"
#include "Tools/Common/TerminalText.h"

namespace standin_host {

namespace {

using Kind = ConsoleCommand::Kind;

constexpr auto kForever = HostEvents::Clock::time_point::max();

// A reply that came just before the connection was lost still becomes an answer: the plug-in polls every 100
// ms.
constexpr std::chrono::milliseconds kGraceAfterLoss{300};

bool IsMissingReply(const HostAnswer& answer)
{
    return answer.kind == HostAnswer::Kind::Failure &&
           answer.hostCode == ORVA_NET_PROTOCOL::KEST_RESULT_TIMEOUT;
}

int StatusOf(Outcome outcome)
{
    switch (outcome) {
    case Outcome::Done:
    case Outcome::Queued:
        return kExitAllAnswered;
    case Outcome::Refused:
    case Outcome::Malformed:
        return kExitCommandFailed;
    case Outcome::Timeout:
    case Outcome::Unanswered:
        return kExitNoAnswer;
    case Outcome::Lost:
        return kExitConnection;
    case Outcome::LoginRefused:
        return kExitLoginRefused;
    }
    return kExitCommandFailed;
}

} // namespace

Session::Session(const Options& options, HostEvents& events, DecoderLink& link, Credentials& credentials,
                 Output& output)
    : m_options(options), m_events(events), m_link(link), m_credentials(credentials), m_output(output)
{
}

void Session::Begin(const ConsoleCommand& first)
{
    if (m_options.login && first.kind != Kind::Login) {
        Login();
    }
}

int Session::Run(const ConsoleCommand& command, LineInput* scriptInput)
{
    m_line = 0;
    if (scriptInput != nullptr) {
        RunScript(*scriptInput);
    } else {
        Execute(command);
    }
    PrintNotifications();
    return m_status;
}

Session::Next Session::Execute(const ConsoleCommand& command)
{
    switch (command.kind) {
    case Kind::Login:
        Login();
        break;
    case Kind::Request:
        Request(command);
        break;
    case Kind::Watch:
        return Watch(command);
    default: // commands that need no session
        break;
    }
    return Next::GoOn;
}

void Session::Login()
{
    ConsoleCommand login;
    login.kind = Kind::Login;
    login.title = "login " + m_credentials.User();
    login.cmdID = ORVA_NET_PROTOCOL::KEST_CMD_REQUEST_LOGIN;
    login.payload = LoginRecord(m_credentials.User(), m_credentials.Password());
    login.form = &kLoginForm;
    Request(login);
}

void Session::Request(const ConsoleCommand& command)
{
    CheckInterrupted();
    const auto host = MakeCommand(command.cmdID, command.hasReply, &m_events);
    m_link.Queue(*host, command.payload.bytes);
    const bool inTime = Await(*host);
    Judge(command, *host, inTime);
    AwaitEnd(command, *host);
}

// Waits until the command is answered or no answer can come; false on a timeout.
bool Session::Await(const HostCommand& command)
{
    auto deadline = HostEvents::Clock::now() + m_options.answerTimeout;
    while (AwaitStep(command, deadline)) {
        if (HostEvents::Clock::now() >= deadline) {
            return false;
        }
        m_events.Wait(deadline);
    }
    return true;
}

// A command may continue after its answer: after system information the decoder's channels come as a
// notification.
void Session::AwaitEnd(const ConsoleCommand& command, const HostCommand& host)
{
    const auto deadline = HostEvents::Clock::now() + m_options.answerTimeout;
    while (!host.IsReleased() && !m_events.Lost()) {
        CheckInterrupted();
        if (HostEvents::Clock::now() >= deadline) {
            throw ExitError(kExitNoAnswer, Where() + tools::OneLine(command.title) +
                                               " was answered, but the plug-in still works on it");
        }
        m_events.Wait(deadline);
        PrintNotifications();
    }
}

bool Session::AwaitStep(const HostCommand& command, HostEvents::Clock::time_point& deadline)
{
    PrintNotifications();
    if (command.IsReleased() || command.Answer()) {
        return false;
    }
    CheckInterrupted();
    if (m_events.Lost()) {
        deadline = std::min(deadline, HostEvents::Clock::now() + kGraceAfterLoss);
    }
    return true;
}

void Session::Judge(const ConsoleCommand& command, const HostCommand& host, bool inTime)
{
    Ending ending{host.Answer(), host.LastExchange(), false, !inTime};
    ending.lost = m_events.Lost() && (!ending.answer || IsMissingReply(*ending.answer));
    if (ending.lost) {
        ending.answer.reset();
    }
    if (ending.answer) {
        HideSecrets(command, *ending.answer);
    }
    const ReadableAnswer read = ReadEnding(command, ending, m_options.deviceCodes);
    m_progress.Clear();
    m_output.PrintCommand({command, ending, read, m_line});
    CheckOutput();
    if (read.outcome == Outcome::Lost) {
        CheckLost();
    }
    if (ending.answer) {
        NoteLogin(command, read.Good());
    }
    const std::string text = tools::OneLine(command.title) +
                             (read.outcome == Outcome::LoginRefused ? " was refused: " : " failed: ") +
                             read.text + (read.hint.empty() ? "" : "; " + read.hint);
    if (ending.atWork) {
        // Nothing is queued after a command that may yet be carried out.
        throw ExitError(kExitNoAnswer, Where() + text);
    }
    if (!read.Good()) {
        Complain(command, StatusOf(read.outcome), text);
    }
}

void Session::NoteLogin(const ConsoleCommand& command, bool good)
{
    using namespace ORVA_NET_PROTOCOL;
    if (command.cmdID == KEST_CMD_REQUEST_LOGIN) {
        m_loggedIn = good; // a refused login ends the previous one
    } else if (good && command.cmdID == KEST_CMD_TVWALL_DECODE_OPTION &&
               command.optType == ORVA2_DECODER_TVW::TVWALL_DECODE_LOGOUT) {
        m_loggedIn = false;
    }
}

// An interrupt is how to end a watch, and with it the script that contains it.
Session::Next Session::Watch(const ConsoleCommand& command)
{
    const std::size_t before = m_notified;
    const auto enough = [&] {
        return command.notifications && m_notified - before >= *command.notifications;
    };
    PrintNotifications();
    while (!enough()) {
        if (m_events.Interrupted() == SIGINT) {
            return Next::End;
        }
        CheckInterrupted();
        CheckLost();
        m_events.Wait(kForever);
        PrintNotifications();
    }
    return Next::GoOn;
}

void Session::RunScript(LineInput& script)
{
    std::string line;
    auto next = Next::GoOn;
    while (next == Next::GoOn && NextLine(script, line)) {
        ++m_line;
        try {
            const auto words = SplitLine(line);
            if (!words.empty()) {
                m_progress.Show("line " + std::to_string(m_line) + script.PositionText());
                next = Execute(ParseScriptLine(words));
            }
        } catch (const UsageError& error) {
            m_progress.Clear();
            throw UsageError(Where() + error.what());
        }
    }
    m_progress.Clear();
}

bool Session::NextLine(LineInput& script, std::string& line)
{
    while (!script.Take(line)) {
        if (script.AtEnd()) {
            return false;
        }
        CheckInterrupted();
        PrintNotifications();
        // Reads what is there even when the connection is lost: it may be the end of the input.
        const auto deadline = m_events.Lost() ? HostEvents::Clock::now() : kForever;
        if (m_events.Wait(deadline, script.Descriptor()).hasInput) {
            script.Fill();
        } else {
            CheckLost();
        }
    }
    return true;
}

void Session::PrintNotifications()
{
    for (const Notification& notification : m_events.TakeNotifications()) {
        m_progress.Clear();
        m_output.PrintNotification(notification);
        ++m_notified;
    }
    CheckOutput();
}

void Session::CheckInterrupted() const
{
    if (const int signal = m_events.Interrupted()) {
        throw ExitError(kExitSignalBase + signal, "interrupted");
    }
}

void Session::CheckLost() const
{
    if (const auto reason = m_events.Lost()) {
        throw ExitError(kExitConnection, Where() + "connection lost: " + *reason);
    }
}

void Session::CheckOutput() const
{
    if (m_output.Failed()) {
        CheckInterrupted();
        throw ExitError(kExitSignalBase + SIGPIPE, "cannot write to standard output");
    }
}

// A failed login ends the session; after any other command a script goes on.
void Session::Complain(const ConsoleCommand& command, int status, const std::string& text)
{
    if (command.kind == Kind::Login) {
        throw ExitError(status, Where() + text);
    }
    m_progress.Clear();
    PrintErrorLines("tvwall-host: " + Where() + text + '\n');
    m_status = std::max(m_status, status);
}

std::string Session::Where() const { return m_line == 0 ? "" : "line " + std::to_string(m_line) + ": "; }

} // namespace standin_host
