#include "Console/OpenSession.h"

#include <utility>

#include "Base/ExitStatus.h"
#include "Commands/Records/Credentials.h"
#include "Console/Options.h"
#include "Host/Connection.h"

namespace standin_host {

namespace {

constexpr std::chrono::seconds s_connectTimeout{10};

std::shared_ptr<CConnection> ConnectOrExit(const SSessionGround& ground, const SConsoleCommand& first)
{
    const SOptions& options = ground.options;
    if (options.bLogin || first.kind == SConsoleCommand::EKind::Login) {
        ground.credentials.Password(); // before the decoder is made to wait for somebody who types
    }
    SConnectionSettings settings;
    settings.bBufferedReceive = options.bBufferedReceive;
    settings.pTrace = options.bTrace ? std::make_shared<CFrameTrace>() : nullptr;
    settings.pEvents = &ground.events;
    std::string strReason;
    auto pConnection = Connect(ground.ioThread, ground.events, options.strHost, options.strPort,
                               s_connectTimeout, std::move(settings), strReason);
    if (pConnection == nullptr && ground.events.Interrupted() != 0) {
        throw CExitError(EXIT_SIGNAL_BASE + ground.events.Interrupted(), "interrupted");
    }
    if (pConnection == nullptr) {
        throw CExitError(EXIT_CONNECTION, "cannot connect to " + options.strHost + " port " +
                                              options.strPort + ": " + strReason +
                                              "; does the decoder run, and is --decoder right?");
    }
    return pConnection;
}

} // namespace

COpenSession::COpenSession(const SSessionGround& ground, const SConsoleCommand& first)
    : m_link(ground.plugin, ground.ioThread, ground.events, ConnectOrExit(ground, first),
             {.nodeID = ground.options.nodeID}),
      m_session(ground.options, ground.events, m_link, ground.credentials, ground.output)
{
    m_session.Begin(first);
}

} // namespace standin_host
