#include "Console/OpenSession.h"

#include <utility>

#include "Base/ExitStatus.h"
#include "Commands/Records/Credentials.h"
#include "Console/Options.h"
#include "Host/Connection.h"

namespace standin_host {

namespace {

constexpr std::chrono::seconds kConnectTimeout{10};

std::shared_ptr<Connection> ConnectOrExit(const SessionGround& ground, const ConsoleCommand& first)
{
    const Options& options = ground.options;
    if (options.login || first.kind == ConsoleCommand::Kind::Login) {
        ground.credentials.Password(); // before the decoder has to wait for the user to type it
    }
    ConnectionSettings settings;
    settings.bufferedReceive = options.bufferedReceive;
    settings.trace = options.trace ? std::make_shared<FrameTrace>() : nullptr;
    settings.exchanges = std::make_shared<ExchangeWatch>();
    settings.events = &ground.events;
    std::string reason;
    auto connection = Connect(ground.ioThread, ground.events, options.host, options.port, kConnectTimeout,
                              std::move(settings), reason);
    if (connection == nullptr) {
        ground.events.CheckInterrupted();
        throw ExitError(kExitConnection, "cannot connect to " + options.host + " port " + options.port +
                                             ": " + reason +
                                             "; does the decoder run, and is --decoder right?");
    }
    return connection;
}

} // namespace

OpenSession::OpenSession(const SessionGround& ground, const ConsoleCommand& first)
    : m_link(ground.plugin, ground.ioThread, ground.events, ConnectOrExit(ground, first),
             {.nodeID = ground.options.nodeID}),
      m_session(ground.options, ground.events, m_link, ground.credentials, ground.output, ground.windows)
{
    m_session.Begin(first);
}

} // namespace standin_host
