#include "Console/Session.h"

#include <algorithm>
#include <utility>

#include "Base/ErrorLines.h"
#include "Base/ExitStatus.h"
#include "Commands/Records/Credentials.h"
#include "Commands/Script.h"
#include "Commands/SeenWindows.h"
#include "Console/AnswerText.h"
#include "Console/Options.h"
#include "Console/Output.h"
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

} // namespace

Session::Session(const Options& options, HostEvents& events, LinkOpener openLink,
                 std::unique_ptr<DecoderLink> link, Credentials& credentials, Output& output,
                 SeenWindows* windows)
    : m_options(options),
      m_events(events),
      m_openLink(std::move(openLink)),
      m_link(std::move(link)),
      m_credentials(credentials),
      m_output(output),
      m_windows(windows)
{
}

Session::~Session() = default;

void Session::Begin(const ConsoleCommand& first)
{
    if (m_options.login && first.kind != Kind::Login) {
        Login();
    }
}

int Session::Run(const ConsoleCommand& command, Script* script)
{
    m_script = script;
    try {
        const Next next = script != nullptr ? RunScript(*script, command.stopOnFailure) : Execute(command);
        if (next == Next::GoOn) {
            PrintNotifications();
        }
        m_script = nullptr;
        return m_status;
    } catch (const UsageError&) { // nothing is graver, and no command is left unanswered
        m_script = nullptr;
        ClearProgress();
        throw;
    } catch (const ExitError& error) {
        ClearProgress();
        throw ExitError(Graver(m_status, error.Status()), error.what());
    }
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

void Session::Login() { Request(LoginCommand(m_credentials.User(), m_credentials.Password())); }

void Session::Request(const ConsoleCommand& command)
{
    m_events.CheckInterrupted();
    const auto host = MakeCommand(command.cmdID, command.hasReply, &m_events);
    if (m_link == nullptr) {
        CheckLost();
        throw ExitError(kExitConnection, Where() + "connection lost");
    }
    m_link->Queue(*host, command.payload.bytes);
    const bool inTime = Await(command, *host);
    Judge(command, *host, inTime);
    AwaitEnd(command, *host);
}

// Waits until the command is answered or no answer can come; false on a timeout.
bool Session::Await(const ConsoleCommand& command, const HostCommand& host)
{
    const HostEvents::Awaited awaited(m_events,
                                      Where() + "waiting for the answer to " + tools::OneLine(command.title));
    auto deadline = std::min(HostEvents::Clock::now() + m_options.answerTimeout, m_until);
    while (AwaitStep(host, deadline)) {
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
    const HostEvents::Awaited awaited(m_events,
                                      Where() + "waiting for the end of " + tools::OneLine(command.title));
    const auto deadline = std::min(HostEvents::Clock::now() + m_options.answerTimeout, m_until);
    while (!host.IsReleased() && !m_events.Lost()) {
        m_events.CheckInterrupted();
        if (HostEvents::Clock::now() >= deadline) {
            throw ExitError(kExitNoAnswer, Where() + tools::OneLine(command.title) +
                                               " was answered, but the plug-in still works on it");
        }
        m_events.Wait(deadline);
        PrintNotifications();
    }
    if (!host.IsReleased()) {
        CheckLost();
    }
}

bool Session::AwaitStep(const HostCommand& command, HostEvents::Clock::time_point& deadline)
{
    PrintNotifications();
    if (command.IsReleased() || command.Answer()) {
        return false;
    }
    m_events.CheckInterrupted();
    if (m_events.Lost()) {
        deadline = std::min(deadline, HostEvents::Clock::now() + kGraceAfterLoss);
    }
    return true;
}

// A failure is told once: by JSON on standard output, else on standard error.
void Session::Judge(const ConsoleCommand& command, const HostCommand& host, bool inTime)
{
    const auto lost = m_events.Lost();
    Ending ending{host.Answer(), host.LastExchange(), false, !inTime};
    ending.lost = lost && (!ending.answer || IsMissingReply(*ending.answer));
    if (ending.lost) {
        ending.answer.reset();
    }
    if (ending.answer) {
        HideSecrets(command, *ending.answer);
    }
    ReadableAnswer read = ReadEnding(command, ending, m_options.deviceCodes);
    read.text += ending.lost ? ", " + *lost : "";
    if (ending.answer) {
        NoteLogin(command, read.Good());
        if (m_windows != nullptr && read.Good()) {
            m_windows->Note(command);
        }
    }
    const bool ends = ending.atWork || ending.lost || command.kind == Kind::Login;
    if (m_comingBack && (read.Good() || (ends && read.outcome != Outcome::LoginRefused))) {
        if (!read.Good()) {
            throw ExitError(StatusOf(read.outcome), read.text); // is tried again
        }
        return;
    }
    if (read.Good() ? !m_options.quiet : m_options.json) {
        m_output.PrintCommand({command, ending, read, m_script == nullptr ? 0 : m_script->Line()});
        m_output.CheckWritten();
    }
    if (!read.Good()) {
        const std::string text = Where() + tools::OneLine(command.title) + ": " + read.text +
                                 (read.hint.empty() ? "" : "; " + read.hint);
        Fail(StatusOf(read.outcome), m_options.json ? "" : text, ends);
    }
}

// Nothing is queued after a command that the plug-in may still be working on, over a lost link, or after a
// failed login; after any other failure a script goes on.
void Session::Fail(int status, const std::string& text, bool ends)
{
    ++m_failures;
    m_status = Graver(m_status, status);
    if (ends) {
        throw ExitError(status, text);
    }
    if (!text.empty()) {
        PrintErrorLines("tvwall-host: " + text + '\n');
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

Session::Next Session::RunScript(Script& script, bool stopOnFailure)
{
    const std::size_t failuresBefore = m_failures;
    ConsoleCommand command;
    auto next = Next::GoOn;
    while (next == Next::GoOn && (!stopOnFailure || m_failures == failuresBefore) &&
           script.Next(command, [this](int descriptor) { return AwaitInput(descriptor); })) {
        ShowProgress("line " + std::to_string(script.Line()) + script.Position());
        next = Execute(command);
    }
    ClearProgress();
    return next;
}

// Waits for the next line of a script that is streamed.
bool Session::AwaitInput(int descriptor)
{
    m_events.CheckInterrupted();
    PrintNotifications();
    // Reads what is there even when the connection is lost: it may be the end of the input.
    const auto deadline = m_events.Lost() ? HostEvents::Clock::now() : kForever;
    const HostEvents::Awaited awaited(m_events, "waiting for the script's next line");
    const bool hasInput = m_events.Wait(deadline, descriptor).hasInput;
    if (!hasInput) {
        CheckLost();
    }
    return hasInput;
}

void Session::PrintNotifications()
{
    ShowNotifications();
    m_output.CheckWritten();
}

void Session::ShowNotifications()
{
    if (m_holdNotifications) {
        return;
    }
    for (const Notification& notification : m_events.TakeNotifications()) {
        if (!m_options.quiet) {
            m_output.PrintNotification(notification);
        }
        ++m_notified;
    }
}

void Session::CheckLost() const
{
    if (const auto reason = m_events.Lost()) {
        if (m_options.json && !m_comingBack) {
            m_output.PrintLinkLost(*reason);
            throw ExitError(kExitConnection, "");
        }
        throw ExitError(kExitConnection, Where() + "connection lost: " + *reason);
    }
}

// Of the command in its script.
std::string Session::Where() const { return m_script == nullptr ? "" : m_script->Place() + ": "; }

} // namespace standin_host
