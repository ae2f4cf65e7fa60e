#include "Console/DryRun.h"

#include <algorithm>
#include <cstddef>

#include "Base/ExitStatus.h"
#include "Commands/ConsoleCommands.h"
#include "Commands/Script.h"
#include "Console/Options.h"
#include "Console/Output.h"
#include "Host/HostEvents.h"

namespace standin_host {

namespace {

void BlankSecrets(Record& record)
{
    for (const Span& secret : record.secrets) {
        std::fill_n(record.bytes.begin() + static_cast<std::ptrdiff_t>(secret.offset), secret.size,
                    uint8_t{'*'});
    }
}

void Print(ConsoleCommand command, const Options& options, std::size_t line, Output& output)
{
    if (command.kind == ConsoleCommand::Kind::Login) {
        if (options.user.empty()) {
            throw UsageError("--user NAME is required to log in");
        }
        command = LoginCommand(options.user, "");
    } else if (command.kind != ConsoleCommand::Kind::Request) {
        return; // queues nothing
    }
    BlankSecrets(command.payload);
    if (!options.quiet) {
        output.PrintQueued(command, line);
    }
    output.CheckWritten();
}

void PrintLogin(const Options& options, Output& output)
{
    ConsoleCommand login;
    login.kind = ConsoleCommand::Kind::Login;
    if (options.login && !options.user.empty() && options.command.kind != login.kind) {
        Print(login, options, 0, output);
    }
}

} // namespace

void DryRun(const Options& options, HostEvents& events, Script* script, Output& output)
{
    PrintLogin(options, output);
    if (script == nullptr) {
        Print(options.command, options, 0, output);
        return;
    }
    const auto await = [&events](int descriptor) {
        events.AwaitInput(descriptor);
        return true;
    };
    for (ConsoleCommand command; script->Next(command, await);) {
        events.CheckInterrupted();
        Print(command, options, script->Line(), output);
    }
}

} // namespace standin_host
