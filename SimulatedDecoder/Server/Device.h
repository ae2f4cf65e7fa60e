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

// The device's initial settings. An empty path means no file.
struct DeviceSettings {
    std::string name = "tvwall-decoder";
    std::string user = "admin";
    std::string password;
    int rows = 2;
    int columns = 2;
    std::string channels; // the file of input channels; if empty, they are made up
    std::string sourceAccounts;
    std::string wallSvg;
    std::string wallText;
    std::string jsonLog;
    std::int32_t notifyChannels = 0; // in each notification made up by faults; 0: 1 to 256 in turn
    std::optional<std::uint32_t> notifySeq = 1000000; // of the first notification; nothing: no numbers
    Faults faults;
};

// What is sent back to the host for one request.
struct Answer {
    std::string payload; // the reply's payload; empty: no reply
    std::chrono::milliseconds delay{0};
};

struct RequestContext;

class Device {
public:
    // Writes the first pictures; throws std::runtime_error when a file cannot be read or written. Generates
    // its own keys unless some are given.
    explicit Device(const DeviceSettings& settings,
                    std::shared_ptr<const DeskKeys> keys = std::make_shared<const DeskKeys>());

    // Carries out one request of the connection with this number, faults included. On return the pictures and
    // the log are up to date, so that they are there before the reply.
    Answer Handle(int connection, HostSession& session, std::string_view text);

    // Rereads the file of channels; on failure keeps the current ones. Returns what has changed.
    ChannelChange ReloadChannels();
    // All channels go off or come back.
    void TurnChannels();

    // Switches one fault, written as on the command line, for a known request; switching it off needs no
    // number. Returns an empty string on success, else a one-line reason.
    std::string SwitchFault(std::string_view spec, bool on);

    // `changed` is called after each request and each change of faults or channels, and whenever a change is
    // reported here.
    void Watch(std::function<void()> changed) { m_changed = std::move(changed); }
    void Changed() const;

    LoginDesk& Desk() { return m_desk; }
    const InputChannels& Channels() const { return m_state.channels; }
    const DeviceState& State() const { return m_state; }
    const RequestHistory& Requests() const { return m_requests; }
    const Faults& ActiveFaults() const { return m_faults; }
    // Channels in each notification made up by faults; 0: it varies.
    std::int32_t MadeUpChannels() const { return m_madeUpChannels; }
    // The number for one notification to one host; 0 follows 4294967295. Nothing when notifications have
    // none.
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
    std::optional<std::uint32_t> m_noticeSeq; // number of the next notification
    RequestHistory m_requests;
    std::function<void()> m_changed;
};

} // namespace simulated_decoder
