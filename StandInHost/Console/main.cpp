#include <clocale>
#include <csignal>
#include <iostream>
#include <memory>
#include <new>
#include <string>

#include <poll.h>
#include <unistd.h>

#include "Base/ErrorLines.h"
#include "Base/ExitStatus.h"
#include "Commands/Records/Credentials.h"
#include "Commands/Script.h"
#include "Console/AnswerText.h"
#include "Console/DryRun.h"
#include "Console/OpenSession.h"
#include "Console/Options.h"
#include "Console/Output.h"
#include "Console/Shell.h"
#include "Host/Command.h"
#include "Host/IoThread.h"
#include "Host/MemPool.h"
#include "Host/Plugin.h"
#include "Tools/Common/StandardStreams.h"

namespace {

using namespace standin_host;

int Run(const Options& options)
{
    HostEvents events;
    const auto output = Output::Create(options.json, events);
    if (options.command.kind == ConsoleCommand::Kind::Profile) {
        const ReadableAnswer read = ReadProfileWork(options.command, options.settings);
        if (!options.quiet) {
            output->PrintOwn(options.command, read);
        }
        return kExitAllAnswered;
    }
    OpenLog(options.logLevel, options.logFile);
    const ErrorLinesWriter writer(
        [&events](std::string_view lines) { (void)events.Write(STDERR_FILENO, lines); });
    IoThread ioThread;
    ioThread.WatchSignals([&events](int signal) { events.Interrupt(signal); });

    SourcePasswords sourcePasswords(events);
    ConsoleCommand command = options.command;
    std::unique_ptr<Script> script;
    if (command.kind == ConsoleCommand::Kind::Script) {
        script = OpenScript(command, events, options.dryRun ? nullptr : &sourcePasswords);
    }
    if (options.dryRun) {
        DryRun(options, events, script.get(), *output);
        return kExitAllAnswered;
    }
    Complete(command, sourcePasswords);
    const Plugin plugin(options.pluginFile);
    Credentials credentials(options.user, options.passwordFile, events);
    const SessionGround ground{options, plugin, ioThread, events, credentials, sourcePasswords, *output};
    if (command.kind == ConsoleCommand::Kind::Shell) {
        return Shell(ground).Run();
    }
    OpenSession open(ground, command);
    return open.Get().Run(command, script.get());
}

// An interrupt is how to end a watch, from its first moment.
bool EndsWatch(const ConsoleCommand& command, int status)
{
    return command.kind == ConsoleCommand::Kind::Watch && status == kExitSignalBase + SIGINT;
}

// Everything has ended: anything still counted was leaked.
void CheckBalance(const char* what, long count)
{
    if (count != 0) {
        std::cerr << "tvwall-host: out of balance: " + std::to_string(count) + ' ' + what + '\n';
    }
}

void CheckBalances()
{
    CheckBalance("memory-pool buffers were not given back",
                 static_cast<long>(MemPool::Instance().LiveBuffers()));
    CheckBalance("operations on dead memory-pool handles",
                 static_cast<long>(MemPool::Instance().WrongHandles()));
    CheckBalance("commands are still referenced", HostCommand::Live());
    CheckBalance("broken rules on commands", HostCommand::Misuses());
}

// A signal ends the program even when nobody reads its last output.
bool CanWrite(int output)
{
    pollfd descriptor{output, POLLOUT, 0};
    return ::poll(&descriptor, 1, 0) == 1;
}

int RunToEnd(int argc, const char* const* argv)
{
    Options options;
    try {
        options = ParseOptions(argc, argv);
        return Run(options);
    } catch (const ExitError& error) {
        if (EndsWatch(options.command, error.Status())) {
            return kExitAllAnswered;
        }
        if (error.Status() == kExitAllAnswered) {
            std::cout << error.what() << '\n';
        } else if (*error.what() != '\0' && (error.Status() < kExitSignalBase || CanWrite(STDERR_FILENO))) {
            std::cerr << "tvwall-host: " << error.what() << '\n';
        }
        return error.Status();
    }
}

int RunToStatus(int argc, const char* const* argv)
{
    try {
        return RunToEnd(argc, argv);
    } catch (const std::bad_alloc&) {
        std::cerr << "tvwall-host: out of memory\n";
        return kExitUsage;
    } catch (const std::exception& error) {
        std::cerr << "tvwall-host: " << error.what() << '\n';
        return kExitUsage;
    }
}

} // namespace

int main(int argc, char** argv)
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): there is no other thread yet
    (void)std::setlocale(LC_CTYPE, ""); // the terminal's character encoding
    tools::OpenStandardStreams();
    (void)std::signal(SIGPIPE, SIG_IGN); // a closed pipe shows as a failed write
    const int status = RunToStatus(argc, argv);
    CheckBalances();
    return status;
}
