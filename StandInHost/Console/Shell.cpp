#include "Console/Shell.h"

#include <algorithm>
#include <cstdio>
#include <iostream>

#include <unistd.h>

#include "Base/ExitStatus.h"
#include "Commands/Records/Credentials.h"
#include "Commands/Records/FailureCodes.h"
#include "Console/Options.h"
#include "Console/Output.h"
#include "Console/WordSplitting.h"
#include "Tools/Common/TerminalText.h"

namespace standin_host {

namespace {

using EKind = SConsoleCommand::EKind;

void Print(const std::string& strText)
{
    (void)std::fputs(strText.c_str(), stdout);
    (void)std::fflush(stdout);
}

// Payloads in the line may be records with passwords in them. Other commands take no password as a word.
bool MayHoldSecret(const std::string& strLine) { return strLine.find("--hex") != std::string::npos; }

} // namespace

CShell::CShell(const SSessionGround& ground) : m_ground(ground), m_piped(STDIN_FILENO)
{
    if (!CLineEditor::HasTerminal()) {
        return;
    }
    m_pEditor = std::make_unique<CLineEditor>(
        ground.events, SEditorHooks{[this] { return Prompt(); }, CompleteLine, [this] { Meanwhile(); }});
    for (const std::string& strLine : m_history.Load()) {
        m_pEditor->Remember(strLine);
    }
}

int CShell::Run()
{
    SConsoleCommand connect;
    connect.kind = EKind::Connect;
    RunCommand(connect);
    std::string strLine;
    while (!m_bExit && ReadLine(strLine)) {
        RunLine(strLine);
    }
    if (const int nSignal = m_ground.events.Interrupted()) {
        return EXIT_SIGNAL_BASE + nSignal;
    }
    return m_pEditor != nullptr ? EXIT_ALL_ANSWERED : m_nStatus;
}

bool CShell::ReadLine(std::string& strLine)
{
    if (m_pEditor == nullptr) {
        return ReadPipedLine(strLine);
    }
    auto result = CLineEditor::EResult::Cancelled;
    while (result == CLineEditor::EResult::Cancelled) {
        m_ground.events.TakeKeyboardInterrupt(); // has done its work when there is a prompt again
        result = m_pEditor->Read(strLine);
    }
    return result == CLineEditor::EResult::Line;
}

bool CShell::ReadPipedLine(std::string& strLine)
{
    while (m_ground.events.Interrupted() == 0 && !m_piped.Take(strLine)) {
        if (m_piped.AtEnd()) {
            return false;
        }
        Meanwhile();
        if (m_ground.events.Wait(CHostEvents::Clock::time_point::max(), m_piped.Descriptor()).bInput) {
            m_piped.Fill();
        }
    }
    return m_ground.events.Interrupted() == 0;
}

void CShell::RunLine(const std::string& strLine)
{
    SConsoleCommand command;
    try {
        const auto words = SplitLine(strLine);
        if (words.empty()) {
            return;
        }
        command = ParseShellLine(words);
    } catch (const CUsageError& error) {
        Remember(strLine, false);
        Complain(error.Status(), error.what());
        return;
    }
    Remember(strLine, true);
    RunCommand(command);
}

void CShell::RunCommand(const SConsoleCommand& command)
{
    switch (command.kind) {
    case EKind::Help:
        Print(command.strHelp);
        break;
    case EKind::Codes:
        Print(FailureTable());
        break;
    case EKind::Disconnect:
        m_session.reset();
        break;
    case EKind::Exit:
        m_bExit = true;
        break;
    case EKind::Connect:
        m_session.reset();
        [[fallthrough]];
    default:
        RunInSession(command);
    }
}

void CShell::RunInSession(const SConsoleCommand& command)
{
    try {
        std::optional<CLineInput> script;
        if (command.kind == EKind::Script) {
            if (command.strScriptFile == "-") {
                throw CUsageError("standard input is the shell's own; name a file");
            }
            script.emplace(command.strScriptFile);
        }
        Meanwhile(); // a lost connection shows before a command is trusted to it
        if (!m_session) {
            Open(command);
        }
        m_nStatus = std::max(m_nStatus, m_session->Session().Run(command, script ? &*script : nullptr));
    } catch (const CUsageError& error) {
        Complain(error.Status(), error.what()); // nothing was sent that is not answered
    } catch (const CExitError& error) {
        // What is still under way ends with its session, so that nothing is queued behind it.
        m_session.reset();
        if (m_ground.output.Failed()) {
            throw; // nobody reads what else could be said
        }
        if (error.Status() == EXIT_LOGIN_REFUSED) {
            m_ground.credentials.Forget();
        }
        Complain(error.Status(), error.what());
    }
}

void CShell::Open(const SConsoleCommand& first)
{
    m_ground.events.ForgetLost();
    m_session.emplace(m_ground, first);
}

void CShell::Meanwhile()
{
    if (!m_session) {
        return;
    }
    m_session->Session().PrintNotifications();
    if (const auto reason = m_ground.events.Lost()) {
        m_session.reset();
        Complain(EXIT_ALL_ANSWERED, "connection lost: " + *reason + "; the next command connects again");
    }
}

// The arrow keys bring back what was mistyped, but the file keeps only what was understood: what was not may
// be a password that went into the wrong window.
void CShell::Remember(const std::string& strLine, bool bUnderstood)
{
    if (m_pEditor == nullptr) {
        return;
    }
    m_pEditor->Remember(strLine);
    if (bUnderstood && !MayHoldSecret(strLine)) {
        m_history.Append(strLine);
    }
}

void CShell::Complain(int nStatus, const std::string& strText)
{
    std::cerr << "tvwall-host: " + strText + '\n';
    m_nStatus = std::max(m_nStatus, nStatus);
}

std::string CShell::Prompt() const
{
    const SOptions& options = m_ground.options;
    const bool bBrackets = options.strHost.find(':') != std::string::npos;
    const std::string strHost = bBrackets ? '[' + options.strHost + ']' : options.strHost;
    const std::string strDecoder = tools::OneLine(strHost + ':' + options.strPort);
    if (!m_session) {
        return strDecoder + " (offline)> ";
    }
    return m_session->Session().LoggedIn() ? tools::OneLine(options.strUser) + '@' + strDecoder + "> "
                                           : strDecoder + " (not logged in)> ";
}

} // namespace standin_host
