#include "Console/OpenSession.h"

#include <algorithm>
#include <utility>

#include "Base/ExitStatus.h"
#include "Commands/Records/Credentials.h"
#include "Console/Options.h"
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

// Asks for the password before the decoder has to wait for the user to type it.
const SessionGround& WithPassword(const SessionGround& ground, const ConsoleCommand& first)
{
    if (ground.options.login || first.kind == ConsoleCommand::Kind::Login) {
        ground.credentials.Password();
    }
    return ground;
}

} // namespace

OpenSession::OpenSession(const SessionGround& ground, const ConsoleCommand& first)
    : m_session(ground.options, ground.events, OpenerOf(WithPassword(ground, first)), ground.credentials,
                ground.output, ground.windows)
{
    m_session.Begin(first);
}

} // namespace standin_host
