#include <clocale>
#include <csignal>
#include <iostream>
#include <memory>
#include <string>

#include <poll.h>
#include <unistd.h>

#include "Base/ExitStatus.h"
#include "Base/LineInput.h"
#include "Commands/Records/Credentials.h"
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

int Run(const SOptions& options)
{
    OpenLog(options.logLevel, options.strLogFile);
    CHostEvents events;
    CIoThread ioThread;
    ioThread.WatchSignals([&events](int nSignal) { events.Interrupt(nSignal); });

    const CPlugin plugin(options.strPluginFile);
    std::unique_ptr<CLineInput> pScript;
    if (options.command.kind == SConsoleCommand::EKind::Script) {
        pScript = std::make_unique<CLineInput>(options.command.strScriptFile);
    }
    CCredentials credentials(options.strUser, options.strPasswordFile, events);
    const auto pOutput = COutput::Create(options.bJson, events);
    const SSessionGround ground{options, plugin, ioThread, events, credentials, *pOutput};
    if (options.command.kind == SConsoleCommand::EKind::Shell) {
        return CShell(ground).Run();
    }
    COpenSession open(ground, options.command);
    return open.Session().Run(options.command, pScript.get());
}

// Everything has ended: whatever is still counted was leaked.
void CheckBalance(const char* szWhat, long nCount)
{
    if (nCount != 0) {
        std::cerr << "tvwall-host: out of balance: " + std::to_string(nCount) + ' ' + szWhat + '\n';
    }
}

void CheckBalances()
{
    CheckBalance("memory-pool buffers were not given back",
                 static_cast<long>(CMemPool::Instance().LiveBuffers()));
    CheckBalance("operations on dead memory-pool handles",
                 static_cast<long>(CMemPool::Instance().WrongHandles()));
    CheckBalance("commands are still referenced", CHostCommand::Live());
    CheckBalance("broken rules on commands", CHostCommand::Misuses());
}

// A signal ends the program also when nobody reads what it says last.
bool CanWrite(int nDescriptor)
{
    pollfd descriptor{nDescriptor, POLLOUT, 0};
    return ::poll(&descriptor, 1, 0) == 1;
}

int RunToStatus(int argc, const char* const* argv)
{
    try {
        return Run(ParseOptions(argc, argv));
    } catch (const CExitError& error) {
        if (error.Status() == EXIT_ALL_ANSWERED) {
            std::cout << error.what() << '\n';
        } else if (*error.what() != '\0' && (error.Status() < EXIT_SIGNAL_BASE || CanWrite(STDERR_FILENO))) {
            std::cerr << "tvwall-host: " << error.what() << '\n';
        }
        return error.Status();
    } catch (const std::exception& error) {
        std::cerr << "tvwall-host: " << error.what() << '\n';
        return EXIT_USAGE;
    }
}

} // namespace

int main(int argc, char** argv)
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): there is no other thread yet
    (void)std::setlocale(LC_CTYPE, ""); // what is a character on the terminal
    tools::OpenStandardStreams();
    (void)std::signal(SIGPIPE, SIG_IGN); // a closed pipe shows as a failed write
    const int nStatus = RunToStatus(argc, argv);
    CheckBalances();
    return nStatus;
}
