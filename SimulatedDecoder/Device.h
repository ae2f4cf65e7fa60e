#pragma once
// The decoder itself, without its connections: account, wall, pictures, log of requests.

#include <chrono>
#include <string>
#include <string_view>

#include "Faults.h"
#include "JsonLog.h"
#include "Login.h"
#include "Options.h"
#include "Wall.h"
#include "WallPictures.h"

namespace simulated_decoder {

// What goes back to the host for one request.
struct Answer {
    std::string payload; // the reply's payload; empty: no reply
    std::chrono::milliseconds delay{0};
};

class Device {
public:
    // Generates the keys and writes the first pictures; std::runtime_error when a file cannot be written.
    explicit Device(const Options& options);

    // Carries out one request of the connection with this number, faults included. When it returns, the
    // pictures and the log are up to date, so that whoever has the reply sees them.
    Answer Handle(int connection, HostSession& session, std::string_view text);

    LoginDesk& Desk() { return m_desk; }
    const Faults& ActiveFaults() const { return m_faults; }

private:
    ErrorCode CarryOutAndDraw(const Request& request, Message& reply, HostSession& session);

    LoginDesk m_desk;
    Wall m_wall;
    WallPictures m_pictures;
    JsonLog m_log;
    Faults m_faults;
};

} // namespace simulated_decoder
