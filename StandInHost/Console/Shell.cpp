#include "Console/Shell.h"

#include <cstdio>
#include <iostream>

#include <unistd.h>

#include "Base/ExitStatus.h"
#include "Base/WordSplitting.h"
#include "Commands/Records/Credentials.h"
#include "Commands/Records/FailureCodes.h"
#include "Commands/Script.h"
#include "Console/AnswerText.h"
#include "Console/Output.h"
#include "Tools/Common/Address.h"
#include "Tools/Common/TerminalText.h"

namespace standin_host {

namespace {

using Kind = ConsoleCommand::Kind;

void Print(const std::string& text)
{
    (void)std::fputs(text.c_str(), stdout);
    (void)std::fflush(stdout);
}

// A payload in the line may be a record with passwords. Other commands take no password as a word.
bool MayHoldSecret(const std::string& line) { return line.find("--hex") != std::string::npos; }

} // namespace

Shell::Shell(const SessionGround& ground)
    : m_options(ground.options),
      m_ground{m_options,          ground.plugin,          ground.ioThread, ground.events,
               ground.credentials, ground.sourcePasswords, ground.output,   &m_windows},
      m_piped(STDIN_FILENO)
{
    if (!LineEditor::HasTerminal()) {
        return;
    }
    m_editor = std::make_unique<LineEditor>(
        ground.events, EditorHooks{[this] { return Prompt(); },
                                   [this](std::string_view line) { return CompleteLine(line, m_windows); },
                                   [this] { Meanwhile(); }});
    for (const std::string& line : m_history.Load()) {
        m_editor->Remember(line);
    }
}

int Shell::Run()
{
    ConsoleCommand connect;
    connect.kind = Kind::Connect;
    connect.title = connect.typed = "connect";
    RunCommand(connect);
    std::string line;
    while (!m_exit && ReadLine(line)) {
        RunLine(line);
    }
    if (const int signal = m_ground.events.Interrupted()) {
        return kExitSignalBase + signal;
    }
    return m_editor != nullptr ? kExitAllAnswered : m_status;
}

bool Shell::ReadLine(std::string& line)
{
    if (m_editor == nullptr) {
        return ReadPipedLine(line);
    }
    auto result = LineEditor::Result::Cancelled;
    while (result == LineEditor::Result::Cancelled) {
        m_ground.events.TakeKeyboardInterrupt(); // an interrupt has done its work once the prompt is back
        result = m_editor->Read(line);
    }
    return result == LineEditor::Result::Line;
}

bool Shell::ReadPipedLine(std::string& line)
{
    const HostEvents::Awaited awaited(m_ground.events, "waiting for the next line");
    while (m_ground.events.Interrupted() == 0 && !m_piped.Take(line)) {
        if (m_piped.AtEnd()) {
            return false;
        }
        Meanwhile();
        if (m_ground.events.Wait(HostEvents::Clock::time_point::max(), m_piped.Descriptor()).hasInput) {
            m_piped.Fill();
        }
    }
    return m_ground.events.Interrupted() == 0;
}

void Shell::RunLine(const std::string& line)
{
    ConsoleCommand command;
    try {
        const auto words = SplitLine(line);
        if (words.empty()) {
            return;
        }
        command = ParseShellLine(words);
    } catch (const UsageError& error) {
        Remember(line, false);
        Complain(error.Status(), error.what());
        return;
    }
    Remember(line, true);
    RunCommand(command);
}

void Shell::RunCommand(const ConsoleCommand& command)
{
    switch (command.kind) {
    case Kind::Help:
        Print(command.help);
        break;
    case Kind::Codes:
        Print(FailureTable());
        break;
    case Kind::Disconnect:
        m_session.reset();
        break;
    case Kind::Exit:
        m_exit = true;
        break;
    default:
        RunInSession(command);
    }
}

void Shell::RunInSession(ConsoleCommand command)
{
    try {
        if (command.kind == Kind::Profile) {
            const ReadableAnswer read = ReadProfileWork(command, m_options.settings);
            if (!m_options.quiet) {
                m_ground.output.PrintOwn(command, read);
            }
            return;
        }
        if (command.kind == Kind::Connect) {
            Connect(command.profile);
        }
        std::unique_ptr<Script> script;
        if (command.kind == Kind::Script) {
            if (command.scriptFile == "-") {
                throw UsageError("standard input is the shell's own; name a file");
            }
            command.stopOnFailure |= m_ground.options.command.stopOnFailure;
            script = OpenScript(command, m_ground.events, &m_ground.sourcePasswords);
        }
        Complete(command, m_ground.sourcePasswords);
        Meanwhile(); // shows a lost connection before sending it a command
        if (!m_session) {
            Open(command);
        }
        m_status = Graver(m_status, m_session->Get().Run(command, script.get()));
    } catch (const UsageError& error) {
        Complain(error.Status(), error.what()); // no command is left unanswered
    } catch (const ExitError& error) {
        // A command still under way ends with its session, so that nothing is queued after it.
        m_session.reset();
        if (m_ground.output.Failed()) {
            throw; // there is no reader for a message
        }
        if (error.Status() == kExitLoginRefused) {
            m_ground.credentials.Forget();
        }
        Complain(error.Status(), error.what());
    }
}

// With a profile, its word counts before that of the options.
void Shell::Connect(const std::string& profile)
{
    if (!profile.empty()) {
        Options next = m_options;
        UseSettings(Over(ProfileFile().Find(profile), m_options.given), next);
        if (next.pluginFile != m_options.pluginFile) {
            throw UsageError(
                "profile " + profile +
                " names another plug-in, and this shell has loaded one; start tvwall-host with --profile " +
                profile);
        }
        m_session.reset();
        m_options = std::move(next);
        m_ground.credentials.Change(m_options.user, m_options.passwordFile);
        m_windows.Forget();
    }
    m_session.reset();
}

void Shell::Open(const ConsoleCommand& first)
{
    m_ground.events.ForgetLost();
    m_session.emplace(m_ground, first);
}

void Shell::Meanwhile()
{
    if (!m_session) {
        return;
    }
    m_session->Get().PrintNotifications();
    if (const auto reason = m_ground.events.Lost()) {
        m_session.reset();
        if (m_options.json) {
            m_ground.output.PrintLinkLost(*reason);
        } else {
            Complain(kExitAllAnswered, "connection lost: " + *reason + "; the next command connects again");
        }
    }
}

// The arrow keys bring back mistyped lines, but the file keeps only valid ones: the others may be a password
// typed into the wrong window.
void Shell::Remember(const std::string& line, bool understood)
{
    if (m_editor == nullptr) {
        return;
    }
    m_editor->Remember(line);
    if (understood && !MayHoldSecret(line)) {
        m_history.Append(line);
    }
}

void Shell::Complain(int status, const std::string& text)
{
    if (!text.empty()) {
        std::cerr << "tvwall-host: " + text + '\n';
    }
    m_status = Graver(m_status, status);
}

std::string Shell::Prompt() const
{
    const Options& options = m_ground.options;
    const std::string decoder = tools::OneLine(tools::AddressText(options.host, options.port));
    if (!m_session) {
        return decoder + " (offline)> ";
    }
    return m_session->Get().LoggedIn() ? tools::OneLine(options.user) + '@' + decoder + "> "
                                       : decoder + " (not logged in)> ";
}

} // namespace standin_host
