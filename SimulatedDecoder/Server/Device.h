#pragma once
// The decoder itself, without its connections: account, state, pictures, log of requests.

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "Picture/WallPictures.h"
#include "Server/Faults.h"
#include "Server/JsonLog.h"
#include "Server/RequestHistory.h"
#include "State/DeviceState.h"
#include "State/Login.h"

namespace simulated_decoder {

// What the device is and does from the start. Paths that are empty name no file.
struct DeviceSettings {
    std::string name = "tvwall-decoder";
    std::string user = "admin";
    std::string password;
    int rows = 2;
    int columns = 2;
    std::string channels; // the file of input channels; without one they are made up
    std::string sourceAccounts;
    std::string wallSvg;
    std::string wallText;
    std::string jsonLog;
    std::int32_t notifyChannels = 0; // in each notification that the faults make up; 0: by turns 1 to 256
    std::optional<std::uint32_t> notifySeq = 1000000; // of the first notification; nothing: all have none
    Faults faults;
};

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
    explicit Device(const DeviceSettings& settings,
                    std::shared_ptr<const DeskKeys> keys = std::make_shared<const DeskKeys>());

    // Carries out one request of the connection with this number, faults included. When it returns, the
    // pictures and the log are up to date, so that whoever has the reply sees them.
    Answer Handle(int connection, HostSession& session, std::string_view text);

    // Reads the file of the channels again; keeps those that it has when that fails. Says what has changed.
    ChannelChange ReloadChannels();
    // All channels go off or come back.
    void TurnChannels();

    // One fault as the command line gives it, for a request that is served; to be taken away, it needs no
    // number. Empty when that went well, else what did not, in one line.
    std::string SwitchFault(std::string_view spec, bool on);

    // `changed` is called after each request, and whenever somebody says here that something has changed.
    void Watch(std::function<void()> changed) { m_changed = std::move(changed); }
    void Changed() const;

    LoginDesk& Desk() { return m_desk; }
    const InputChannels& Channels() const { return m_state.channels; }
    const DeviceState& State() const { return m_state; }
    const RequestHistory& Requests() const { return m_requests; }
    const Faults& ActiveFaults() const { return m_faults; }
    // In each notification that the faults make up; 0: it varies.
    std::int32_t MadeUpChannels() const { return m_madeUpChannels; }
    // For one notification to one host; after 4294967295 comes 0. Nothing when they have no numbers.
    std::optional<std::uint32_t> NextNoticeSeq();

private:
    ErrorCode CarryOutAndDraw(RequestContext& context);

    LoginDesk m_desk;
    std::string m_channelsPath;
    DeviceState m_state;
    WallPictures m_pictures;
    JsonLog m_log;
    Faults m_faults;
    std::int32_t m_madeUpChannels;
    std::optional<std::uint32_t> m_noticeSeq; // of the next notification
    RequestHistory m_requests;
    std::function<void()> m_changed;
};

} // namespace simulated_decoder
