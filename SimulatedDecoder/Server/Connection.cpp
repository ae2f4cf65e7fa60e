#include "Server/Connection.h"

#include <algorithm>
#include <utility>

#include <asio/buffer.hpp>
#include <asio/post.hpp>
#include <asio/write.hpp>
#include <spdlog/spdlog.h>

#include "Server/Acceptor.h"
#include "Tools/Common/SocketFaults.h"

namespace simulated_decoder {

namespace {

// A host that does not read its replies is cut off here.
constexpr std::size_t kMaxOutput = std::size_t{16} * 1024 * 1024;

// Between two pieces of chunked output, so that the host's socket really receives them separately.
constexpr std::chrono::microseconds kPiecePause{100};

// Periods missed on a busy machine are made up for, so that short ones keep their rate, unless they are too
// long past.
constexpr std::chrono::seconds kMostBehind{1};

} // namespace

Connection::Connection(asio::ip::tcp::socket socket, int number, Device& device, CapturedConnection capture,
                       ClosedFunction closed)
    : m_socket(std::move(socket)),
      m_number(number),
      m_device(device),
      m_capture(std::move(capture)),
      m_closed(std::move(closed)),
      m_session(device.Desk()),
      m_madeUpNotices(device.MadeUpChannels()),
      m_pieceTimer(m_socket.get_executor()),
      m_beatTimer(m_socket.get_executor()),
      m_noticeTimer(m_socket.get_executor())
{
}

void Connection::Start()
{
    std::error_code ignored;
    m_socket.set_option(asio::ip::tcp::no_delay(true), ignored);
    ObeyFaults();
    Read();
}

void Connection::ObeyFaults()
{
    m_replies = 0;
    Repeat(m_beatTimer, &Faults::beatEvery, Unasked::Beat);
    Repeat(m_noticeTimer, &Faults::notifyEvery, Unasked::MadeUpNotice);
}

HostStatus Connection::Status() const
{
    std::error_code gone;
    return {m_number, Text(m_socket.remote_endpoint(gone)), m_since, m_session.IsLoggedIn(), m_requests};
}

void Connection::Notify(const ChannelChange& change)
{
    if (change.list) {
        SendUnasked(Unasked::ChannelList);
    }
    if (change.states) {
        SendUnasked(Unasked::ChannelStates);
    }
}

void Connection::Close(std::string_view reason)
{
    if (!m_open) {
        return;
    }
    m_open = false;
    spdlog::info("host {}: closed: {}", m_number, reason);
    m_session.LogOut();
    m_capture.End(CapturedConnection::Side::Decoder);
    std::error_code ignored;
    m_socket.shutdown(asio::ip::tcp::socket::shutdown_both, ignored);
    m_socket.close(ignored);
    m_pieceTimer.cancel();
    m_beatTimer.cancel();
    m_noticeTimer.cancel();
    m_closed(m_number);
}

void Connection::Read()
{
    m_socket.async_read_some(
        asio::buffer(m_input), [self = shared_from_this()](const std::error_code& error, std::size_t length) {
            if (error) {
                self->m_capture.End(CapturedConnection::Side::Host);
                self->Close(error == asio::error::eof ? "by the host" : tools::SocketFault(error));
                return;
            }
            const std::string_view bytes(self->m_input.data(), length);
            self->m_capture.Sent(CapturedConnection::Side::Host, bytes);
            self->m_frames.Feed(bytes);
            self->TakeFrames();
        });
}

void Connection::TakeFrames()
{
    std::string payload;
    while (m_open && !m_cutting) {
        switch (m_frames.Next(payload)) {
        case FrameReader::Result::Payload:
            TakeRequest(payload);
            // Lets other work run in between, however many requests came at once.
            asio::post(m_socket.get_executor(), [self = shared_from_this()] { self->TakeFrames(); });
            return;
        case FrameReader::Result::Heartbeat:
            SendUnasked(Unasked::Beat);
            break;
        case FrameReader::Result::NeedMore:
            Read();
            return;
        case FrameReader::Result::BadHead:
            Close("what it sent is no frame");
            break;
        case FrameReader::Result::TooLong:
            Close("it announced a frame that is too long");
            break;
        }
    }
}

void Connection::TakeRequest(std::string_view payload)
{
    ++m_requests;
    const Answer answer = m_device.Handle(m_number, m_session, payload);
    if (answer.payload.empty()) {
        return;
    }
    std::string frame =
        (m_device.ActiveFaults().deviceHead ? DeviceHead() : "") + EncodeFrame(answer.payload);
    m_cutting = ++m_replies == m_device.ActiveFaults().cutAfter;
    if (m_cutting) {
        frame.resize(frame.size() / 2);
    }
    Reply(std::move(frame), answer.delay);
}

void Connection::Reply(std::string frame, std::chrono::milliseconds delay)
{
    const auto send = [this](std::string bytes, bool last) {
        Enqueue(std::move(bytes), std::nullopt);
        m_closeWhenSent = m_closeWhenSent || last;
    };
    if (!Reserve(frame.size())) {
        return;
    }
    if (delay.count() == 0) {
        send(std::move(frame), m_cutting);
        return;
    }
    auto timer = std::make_shared<asio::steady_timer>(m_socket.get_executor(), delay);
    timer->async_wait([weak = weak_from_this(), timer, send, held = std::move(frame),
                       last = m_cutting](const std::error_code&) {
        if (const auto self = weak.lock()) {
            send(held, last);
        }
    });
}

bool Connection::Reserve(std::size_t length)
{
    m_unsent += length;
    if (m_unsent > kMaxOutput) {
        Close("it does not read what it is sent");
    }
    return m_open;
}

void Connection::Enqueue(std::string bytes, std::optional<Unasked> kind)
{
    if (!m_open || m_closeWhenSent) {
        return;
    }
    const bool idle = m_output.empty();
    m_output.push_back({std::move(bytes), kind});
    if (idle) {
        SendNextPiece();
    }
}

void Connection::SendUnasked(Unasked kind)
{
    if (kind != Unasked::Beat && !m_session.IsLoggedIn()) {
        return;
    }
    if (m_waiting.insert(kind).second) {
        std::string frames;
        for (auto left = kind == Unasked::MadeUpNotice ? std::max(m_device.ActiveFaults().notifyBurst, 1U)
                                                       : 1;
             left > 0; --left) {
            frames += EncodeFrame(UnaskedText(kind));
        }
        if (Reserve(frames.size())) {
            Enqueue(std::move(frames), kind);
        }
    } else {
        m_due.insert(kind);
    }
}

std::string Connection::UnaskedText(Unasked kind)
{
    switch (kind) {
    case Unasked::ChannelList:
        return ChannelChangeNotice(m_device.Channels(), m_device.NextNoticeSeq());
    case Unasked::ChannelStates:
        return ChannelStateNotice(m_device.Channels(), m_device.NextNoticeSeq());
    case Unasked::MadeUpNotice:
        return m_madeUpNotices.Next(m_device.NextNoticeSeq());
    case Unasked::Beat:
        break; // a heartbeat has no payload
    }
    return {};
}

void Connection::SendNextPiece()
{
    const std::size_t chunk = m_device.ActiveFaults().chunk;
    asio::const_buffer piece = asio::buffer(m_output.front().bytes) + m_sent;
    if (chunk != 0) {
        piece = asio::buffer(piece, chunk);
    }
    asio::async_write(m_socket, piece,
                      [self = shared_from_this(), piece](const std::error_code& error, std::size_t length) {
                          self->m_capture.Sent(CapturedConnection::Side::Decoder,
                                               {static_cast<const char*>(piece.data()), length});
                          if (error) {
                              self->Close(tools::SocketFault(error));
                          }
                          // The socket may have taken the piece just before the connection was closed.
                          if (self->m_open) {
                              self->PieceSent(length);
                          }
                      });
}

void Connection::PieceSent(std::size_t length)
{
    m_unsent -= length;
    m_sent += length;
    if (m_sent == m_output.front().bytes.size()) {
        // Queues the next of its kind before this one leaves, so that the queue keeps going.
        if (const auto kind = m_output.front().kind;
            kind && m_waiting.erase(*kind) + m_due.erase(*kind) > 1) {
            SendUnasked(*kind);
        }
        m_output.pop_front();
        m_sent = 0;
    }
    if (m_output.empty()) {
        if (m_closeWhenSent) {
            Close("cut on order");
        }
        return;
    }
    if (m_device.ActiveFaults().chunk == 0) {
        SendNextPiece();
        return;
    }
    m_pieceTimer.expires_after(kPiecePause);
    m_pieceTimer.async_wait([self = shared_from_this()](const std::error_code&) {
        if (self->m_open) {
            self->SendNextPiece();
        }
    });
}

void Connection::Repeat(asio::steady_timer& timer, std::chrono::milliseconds Faults::*period, Unasked kind)
{
    timer.cancel();
    if ((m_device.ActiveFaults().*period).count() != 0) {
        timer.expires_after(m_device.ActiveFaults().*period);
        AwaitStep(timer, period, kind);
    }
}

void Connection::AwaitStep(asio::steady_timer& timer, std::chrono::milliseconds Faults::*period, Unasked kind)
{
    timer.async_wait([self = shared_from_this(), &timer, period, kind](const std::error_code& cancelled) {
        if (cancelled || !self->m_open || (self->m_device.ActiveFaults().*period).count() == 0) {
            return;
        }
        self->SendUnasked(kind);
        const auto step = self->m_device.ActiveFaults().*period;
        timer.expires_at(std::max(timer.expiry() + step, std::chrono::steady_clock::now() - kMostBehind));
        self->AwaitStep(timer, period, kind);
    });
}

} // namespace simulated_decoder
