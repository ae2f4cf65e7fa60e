#pragma once

#include "Console/Session.h"
#include "Host/DecoderLink.h"

namespace standin_host {

class CPlugin;

// What every session of the program stands on; all of it outlives them.
struct SSessionGround {
    const SOptions& options;
    const CPlugin& plugin;
    CIoThread& ioThread;
    CHostEvents& events;
    CCredentials& credentials;
    COutput& output;
};

// A session with the connection and the processor that it uses. A lost one is not mended: the program opens
// another.
class COpenSession {
public:
    // Connects, and logs in unless told otherwise or the first command does. Throws CExitError, with status
    // 128 + n after a signal.
    COpenSession(const SSessionGround& ground, const SConsoleCommand& first);

    CSession& Session() { return m_session; }
    const CSession& Session() const { return m_session; }

private:
    CDecoderLink m_link;
    CSession m_session;
};

} // namespace standin_host
