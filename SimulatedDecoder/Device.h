#pragma once
// The decoder itself, without its connections: account, wall, pictures, log of requests.

#include <chrono>
#include <memory>
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
    // Writes the first pictures; std::runtime_error when a file cannot be written.
    Device(const Options& options, std::shared_ptr<const DeskKeys> keys);

    // Carries out one request of the connection with this number, faults included. When it returns, the
    // pictures and the log are up to date, so that whoever has the reply sees them.
    Answer Handle(int connection, HostSession& session, std::string_view text);

    LoginDesk& Desk() { return m_desk; }
    const Faults& ActiveFaults() const { return m_faults; }
    // That its notifications tell of; 0: by turns 1 to 256.
    std::uint32_t Channels() const { return m_channels; }

private:
    ErrorCode CarryOutAndDraw(const Request& request, Message& reply, HostSession& session);

    LoginDesk m_desk;
    Wall m_wall;
    WallPictures m_pictures;
    JsonLog m_log;
    Faults m_faults;
    std::uint32_t m_channels;
};

} // namespace simulated_decoder
