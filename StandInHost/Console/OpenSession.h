#pragma once

#include "Console/Session.h"

namespace standin_host {

class IoThread;
class Plugin;
class SeenWindows;
class SourcePasswords;

// What every session of the program needs; all of it outlives them.
struct SessionGround {
    const Options& options;
    const Plugin& plugin;
    IoThread& ioThread;
    HostEvents& events;
    Credentials& credentials;
    SourcePasswords& sourcePasswords;
    Output& output;
    SeenWindows* windows = nullptr; // told of each command that was done; null: nobody wants to know
};

// A session and what opens its links. A lost one is not repaired: the program opens another.
class OpenSession {
public:
    // Connects, and logs in unless told otherwise or the first command does. Throws ExitError, with status
    // 128 + n after a signal.
    OpenSession(const SessionGround& ground, const ConsoleCommand& first);

    Session& Get() { return m_session; }
    const Session& Get() const { return m_session; }

private:
    Session m_session;
};

} // namespace standin_host
