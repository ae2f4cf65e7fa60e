#include "Console/Session.h"

#include <algorithm>
#include <csignal>
#include <iostream>
#include <utility>

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

using EKind = SConsoleCommand::EKind;

constexpr auto s_forever = CHostEvents::Clock::time_point::max();

// A reply that came just before the connection was lost still becomes an answer: the plug-in looks for it
// every 100 ms.
constexpr std::chrono::milliseconds s_graceAfterLoss{300};

bool IsMissingReply(const SAnswer& answer)
{
    return answer.kind == SAnswer::EKind::Failure && answer.nCode == ORVA_NET_PROTOCOL::KEST_RESULT_TIMEOUT;
}

} // namespace

CSession::CSession(const SOptions& options, CHostEvents& events, CDecoderLink& link,
                   CCredentials& credentials, COutput& output)
    : m_options(options), m_events(events), m_link(link), m_credentials(credentials), m_output(output)
{
}

void CSession::Begin(const SConsoleCommand& first)
{
    if (m_options.bLogin && first.kind != EKind::Login) {
        Login();
    }
}

int CSession::Run(const SConsoleCommand& command, CLineInput* pScript)
{
    m_nLine = 0;
    if (pScript != nullptr) {
        RunScript(*pScript);
    } else {
        Execute(command);
    }
    PrintNotifications();
    return m_nStatus;
}

CSession::ENext CSession::Execute(const SConsoleCommand& command)
{
    switch (command.kind) {
    case EKind::Login:
        Login();
        break;
    case EKind::Request:
        Request(command);
        break;
    case EKind::Watch:
        return Watch(command);
    default: // what the program does without a session
        break;
    }
    return ENext::GoOn;
}

void CSession::Login()
{
    SConsoleCommand login;
    login.kind = EKind::Login;
    login.strTitle = "login " + m_credentials.User();
    login.nCmdID = ORVA_NET_PROTOCOL::KEST_CMD_REQUEST_LOGIN;
    login.payload = LoginRecord(m_credentials.User(), m_credentials.Password());
    login.pForm = &kLoginForm;
    Request(login);
}

void CSession::Request(const SConsoleCommand& command)
{
    CheckInterrupted();
    const auto pHost = MakeCommand(command.nCmdID, command.bHasReply, &m_events);
    m_link.Queue(*pHost, command.payload.bytes);
    const bool bInTime = Await(*pHost);
    Judge(command, *pHost, bInTime);
    AwaitEnd(command, *pHost);
}

// Waits until the command is answered or no answer can come; false when the time ran out first.
bool CSession::Await(const CHostCommand& command)
{
    auto deadline = CHostEvents::Clock::now() + m_options.answerTimeout;
    while (AwaitStep(command, deadline)) {
        if (CHostEvents::Clock::now() >= deadline) {
            return false;
        }
        m_events.Wait(deadline);
    }
    return true;
}

// A command may go on behind its answer: system information is followed by the decoder's channels, which come
// as a notification.
void CSession::AwaitEnd(const SConsoleCommand& command, const CHostCommand& host)
{
    const auto deadline = CHostEvents::Clock::now() + m_options.answerTimeout;
    while (!host.IsReleased() && !m_events.Lost()) {
        CheckInterrupted();
        if (CHostEvents::Clock::now() >= deadline) {
            throw CExitError(EXIT_NO_ANSWER, Where() + tools::OneLine(command.strTitle) +
                                                 " was answered, but the plug-in still works on it");
        }
        m_events.Wait(deadline);
        PrintNotifications();
    }
}

bool CSession::AwaitStep(const CHostCommand& command, CHostEvents::Clock::time_point& deadline)
{
    PrintNotifications();
    if (command.IsReleased() || command.Answer()) {
        return false;
    }
    CheckInterrupted();
    if (m_events.Lost()) {
        deadline = std::min(deadline, CHostEvents::Clock::now() + s_graceAfterLoss);
    }
    return true;
}

void CSession::Judge(const SConsoleCommand& command, const CHostCommand& host, bool bInTime)
{
    const bool bLogin = command.nCmdID == ORVA_NET_PROTOCOL::KEST_CMD_REQUEST_LOGIN;
    auto answer = host.Answer();
    const bool bLost = m_events.Lost() && (!answer || IsMissingReply(*answer));
    if (bLost) {
        answer.reset();
    }
    SReadAnswer read;
    if (answer) {
        HideSecrets(command, *answer);
        read = ReadAnswer(command, *answer);
    }
    m_progress.Clear();
    m_output.Command(command, answer ? &*answer : nullptr, read);
    CheckOutput();
    if (bLost) {
        CheckLost();
    }
    const std::string strTitle = tools::OneLine(command.strTitle);
    if (answer) {
        NoteLogin(command, read.bGood);
    }
    if (answer && !read.bGood) {
        Complain(command, bLogin ? EXIT_LOGIN_REFUSED : EXIT_COMMAND_FAILED,
                 strTitle + (bLogin ? " was refused: " : " failed: ") + read.strText + "; " + read.strHint);
    } else if (!bInTime) {
        // The plug-in still works on it; nothing is queued behind a command that may yet be carried out.
        throw CExitError(EXIT_NO_ANSWER,
                         Where() + strTitle + " got no answer in time; it may yet be carried out");
    } else if (!answer && command.bHasReply) {
        Complain(command, EXIT_NO_ANSWER, strTitle + " got no answer from the plug-in");
    }
}

void CSession::NoteLogin(const SConsoleCommand& command, bool bGood)
{
    using namespace ORVA_NET_PROTOCOL;
    CByteReader payload(command.payload.bytes);
    if (command.nCmdID == KEST_CMD_REQUEST_LOGIN) {
        m_bLoggedIn = bGood; // a refused login ends the one before
    } else if (bGood && command.nCmdID == KEST_CMD_TVWALL_DECODE_OPTION &&
               payload.U32() == ORVA2_DECODER_TVW::TVWALL_DECODE_LOGOUT) {
        m_bLoggedIn = false;
    }
}

// An interrupt is the way to end a watch, and with it a script that it stands in.
CSession::ENext CSession::Watch(const SConsoleCommand& command)
{
    const std::size_t nBefore = m_nNotified;
    const auto bEnough = [&] {
        return command.nNotifications && m_nNotified - nBefore >= *command.nNotifications;
    };
    PrintNotifications();
    while (!bEnough()) {
        if (m_events.Interrupted() == SIGINT) {
            return ENext::End;
        }
        CheckInterrupted();
        CheckLost();
        m_events.Wait(s_forever);
        PrintNotifications();
    }
    return ENext::GoOn;
}

void CSession::RunScript(CLineInput& script)
{
    std::string strLine;
    auto next = ENext::GoOn;
    while (next == ENext::GoOn && NextLine(script, strLine)) {
        ++m_nLine;
        try {
            const auto words = SplitLine(strLine);
            if (!words.empty()) {
                m_progress.Show("line " + std::to_string(m_nLine) + script.PositionText());
                next = Execute(ParseScriptLine(words));
            }
        } catch (const CUsageError& error) {
            m_progress.Clear();
            throw CUsageError(Where() + error.what());
        }
    }
    m_progress.Clear();
}

bool CSession::NextLine(CLineInput& script, std::string& strLine)
{
    while (!script.Take(strLine)) {
        if (script.AtEnd()) {
            return false;
        }
        CheckInterrupted();
        PrintNotifications();
        // What is there to read is read even when the connection is lost: it may be the end.
        const auto deadline = m_events.Lost() ? CHostEvents::Clock::now() : s_forever;
        if (m_events.Wait(deadline, script.Descriptor()).bInput) {
            script.Fill();
        } else {
            CheckLost();
        }
    }
    return true;
}

void CSession::PrintNotifications()
{
    for (const SNotification& notification : m_events.TakeNotifications()) {
        m_progress.Clear();
        m_output.Notification(notification);
        ++m_nNotified;
    }
    CheckOutput();
}

void CSession::CheckInterrupted() const
{
    if (const int nSignal = m_events.Interrupted()) {
        throw CExitError(EXIT_SIGNAL_BASE + nSignal, "interrupted");
    }
}

void CSession::CheckLost() const
{
    if (const auto reason = m_events.Lost()) {
        throw CExitError(EXIT_CONNECTION, Where() + "connection lost: " + *reason);
    }
}

void CSession::CheckOutput() const
{
    if (m_output.Failed()) {
        CheckInterrupted();
        throw CExitError(EXIT_SIGNAL_BASE + SIGPIPE, "cannot write to standard output");
    }
}

// A failed login ends the session; after any other command a script goes on.
void CSession::Complain(const SConsoleCommand& command, int nStatus, const std::string& strText)
{
    if (command.kind == EKind::Login) {
        throw CExitError(nStatus, Where() + strText);
    }
    m_progress.Clear();
    std::cerr << "tvwall-host: " + Where() + strText + '\n';
    m_nStatus = std::max(m_nStatus, nStatus);
}

std::string CSession::Where() const { return m_nLine == 0 ? "" : "line " + std::to_string(m_nLine) + ": "; }

} // namespace standin_host
