#include "Console/OpenSession.h"

#include <algorithm>
#include <utility>

#include "Base/ExitStatus.h"
#include "Commands/Records/Credentials.h"
#include "Console/AnswerText.h"
#include "Console/Options.h"
#include "Console/Output.h"
#include "Host/Connection.h"
#include "Host/DecoderLink.h"

namespace standin_host {

namespace {

constexpr std::chrono::seconds kConnectTimeout{10};

std::shared_ptr<Connection> ConnectOrExit(const SessionGround& ground, std::chrono::milliseconds timeout)
{
    const Options& options = ground.options;
    ConnectionSettings settings;
    settings.bufferedReceive = options.bufferedReceive;
    settings.trace = options.trace ? std::make_shared<FrameTrace>() : nullptr;
    settings.exchanges = std::make_shared<ExchangeWatch>();
    settings.events = &ground.events;
    std::string reason;
    auto connection = Connect(ground.ioThread, ground.events, options.host, options.port, timeout,
                              std::move(settings), reason);
    if (connection == nullptr) {
        ground.events.CheckInterrupted();
        throw ExitError(kExitConnection, "cannot connect to " + options.host + " port " + options.port +
                                             ": " + reason +
                                             "; does the decoder run, and is --decoder right?");
    }
    return connection;
}

LinkOpener OpenerOf(const SessionGround& ground)
{
    return [ground](HostEvents::Clock::time_point until) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - HostEvents::Clock::now());
        auto connection = ConnectOrExit(ground, std::min<std::chrono::milliseconds>(kConnectTimeout, left));
        return std::make_unique<DecoderLink>(ground.plugin, ground.ioThread, ground.events,
                                             std::move(connection),
                                             LinkSettings{.nodeID = ground.options.nodeID});
    };
}

bool LogsIn(const SessionGround& ground, const ConsoleCommand& first)
{
    return ground.options.login || first.kind == ConsoleCommand::Kind::Login;
}

// Tells in JSON what the login, or without one the first command, came to when there is no link for it.
[[noreturn]] void FailToConnect(const SessionGround& ground, const ConsoleCommand& first, const char* why)
{
    ReadableAnswer read;
    read.outcome = Outcome::NotConnected;
    read.text = why;
    ground.output.PrintOwn(LogsIn(ground, first) ? LoginCommand(ground.options.user, "") : first, read);
    throw ExitError(kExitConnection, "");
}

std::unique_ptr<DecoderLink> OpenFirst(const SessionGround& ground, const ConsoleCommand& first,
                                       const LinkOpener& openLink)
{
    // Asks for the password before the decoder has to wait for the user to type it.
    if (LogsIn(ground, first)) {
        ground.credentials.Password();
    }
    try {
        return openLink(HostEvents::Clock::time_point::max());
    } catch (const ExitError& error) {
        if (!ground.options.json || error.Status() != kExitConnection) {
            throw;
        }
        FailToConnect(ground, first, error.what());
    }
}

} // namespace

OpenSession::OpenSession(const SessionGround& ground, const ConsoleCommand& first)
    : m_session(ground.options, ground.events, OpenerOf(ground), OpenFirst(ground, first, OpenerOf(ground)),
                ground.credentials, ground.output, ground.windows)
{
    m_session.Begin(first);
}

} // namespace standin_host
