#pragma once
// The decoder itself, without its connections: account, state, pictures, log of requests.

#include <chrono>
#include <string>
#include <string_view>

#include "DeviceState.h"
#include "Faults.h"
#include "JsonLog.h"
#include "Login.h"
#include "Options.h"
#include "WallPictures.h"

namespace simulated_decoder {

// What goes back to the host for one request.
struct Answer {
    std::string payload; // the reply's payload; empty: no reply
    std::chrono::milliseconds delay{0};
};

struct RequestContext;

class Device {
public:
    // Generates the keys and writes the first pictures; std::runtime_error when a file cannot be read or
    // written.
    explicit Device(const Options& options);

    // Carries out one request of the connection with this number, faults included. When it returns, the
    // pictures and the log are up to date, so that whoever has the reply sees them.
    Answer Handle(int connection, HostSession& session, std::string_view text);

    // Reads the file of the channels again; keeps those that it has when that fails. Says what has changed.
    ChannelChange ReloadChannels();
    // All channels go off or come back.
    void TurnChannels();

    LoginDesk& Desk() { return m_desk; }
    const InputChannels& Channels() const { return m_state.channels; }
    const Faults& ActiveFaults() const { return m_faults; }

private:
    ErrorCode CarryOutAndDraw(RequestContext& context);

    LoginDesk m_desk;
    std::string m_channelsPath;
    DeviceState m_state;
    WallPictures m_pictures;
    JsonLog m_log;
    Faults m_faults;
};

} // namespace simulated_decoder
