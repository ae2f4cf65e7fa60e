#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include <asio/ip/tcp.hpp>
#include <asio/steady_timer.hpp>

#include "Link/Frame.h"
#include "Server/CapturedConnection.h"
#include "Server/Device.h"
#include "State/ChannelNotices.h"
#include "State/Login.h"

namespace simulated_decoder {

// One connected host, for whoever operates the decoder.
struct HostStatus {
    int number = 0;
    std::string address; // and port
    std::chrono::system_clock::time_point since;
    bool loggedIn = false;
    std::uint64_t requests = 0;
};

// One connected host. Lives as long as an operation on its socket or timers is pending or its owner holds it;
// runs on the thread of the socket's context. The device must outlive the closing of the connection.
class Connection : public std::enable_shared_from_this<Connection> {
public:
    using ClosedFunction = std::function<void(int number)>;

    // `number` names the host in logs, from 1. `closed` is called once, when the connection has closed on its
    // own.
    Connection(asio::ip::tcp::socket socket, int number, Device& device, CapturedConnection capture,
               ClosedFunction closed);

    void Start();
    // Sends the state of the channels to a logged-in host.
    void Notify(const ChannelChange& change);
    // The device's faults have changed: periods and the count of replies restart.
    void ObeyFaults();
    HostStatus Status() const;
    // Closes at once; unsent output is lost.
    void Close(std::string_view reason);

private:
    void Read();
    void TakeFrames();
    void TakeRequest(std::string_view payload);
    void Reply(std::string frame, std::chrono::milliseconds delay);

    // Output that is not a reply to a request.
    enum class Unasked { Beat, ChannelList, ChannelStates, MadeUpNotice };
    struct Frame {
        std::string bytes;
        std::optional<Unasked> kind; // nothing: a reply
    };

    // Reserves room for that many more bytes. False, with the connection closed, when a host that does not
    // read has used up its room.
    bool Reserve(std::size_t length);
    void Enqueue(std::string bytes, std::optional<Unasked> kind);
    // Sends it between two frames, but never after a waiting one of its kind: on a slow link at most one of
    // each kind is queued, and the next follows once it has gone out.
    void SendUnasked(Unasked kind);
    std::string UnaskedText(Unasked kind);
    void SendNextPiece();
    void PieceSent(std::size_t length);

    // Sends something at this fault's period, as long as it is active and the connection open.
    void Repeat(asio::steady_timer& timer, std::chrono::milliseconds Faults::*period, Unasked kind);
    void AwaitStep(asio::steady_timer& timer, std::chrono::milliseconds Faults::*period, Unasked kind);

    asio::ip::tcp::socket m_socket;
    int m_number;
    Device& m_device;
    CapturedConnection m_capture;
    ClosedFunction m_closed;
    HostSession m_session;
    std::chrono::system_clock::time_point m_since = std::chrono::system_clock::now();
    std::uint64_t m_requests = 0;
    bool m_open = true;

    std::array<char, 65536> m_input{};
    FrameReader m_frames;
    std::uint32_t m_replies = 0;
    bool m_cutting = false;       // the last reply is on its way; nothing more is read
    bool m_closeWhenSent = false; // close once m_output is sent

    std::deque<Frame> m_output;
    std::size_t m_unsent = 0; // bytes in m_output and in deliberately delayed replies
    std::size_t m_sent = 0;   // bytes of m_output.front().bytes already sent

    MadeUpNotices m_madeUpNotices;
    std::set<Unasked> m_waiting; // kinds in m_output
    std::set<Unasked> m_due;     // kinds to send once more when they have left it
    asio::steady_timer m_pieceTimer;
    asio::steady_timer m_beatTimer;
    asio::steady_timer m_noticeTimer;
};

} // namespace simulated_decoder
