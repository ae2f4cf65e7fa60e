#pragma once
// The decoder itself, without its connections: account, state, pictures, log of requests.

#include <chrono>
#include <memory>
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
    // Writes the first pictures; std::runtime_error when a file cannot be read or written. Keys of its own
    // are generated unless some are given.
    explicit Device(const Options& options,
                    std::shared_ptr<const DeskKeys> keys = std::make_shared<const DeskKeys>());

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
    // In each notification that the faults make up; 0: it varies.
    std::int32_t MadeUpChannels() const { return m_madeUpChannels; }

private:
    ErrorCode CarryOutAndDraw(RequestContext& context);

    LoginDesk m_desk;
    std::string m_channelsPath;
    DeviceState m_state;
    WallPictures m_pictures;
    JsonLog m_log;
    Faults m_faults;
    std::int32_t m_madeUpChannels;
};

} // namespace simulated_decoder
