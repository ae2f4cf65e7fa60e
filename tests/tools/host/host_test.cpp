// What the stand-in host decides by itself: its balances, its connections.

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include <asio/ip/tcp.hpp>
#include <asio/post.hpp>
#include <asio/read.hpp>
#include <asio/use_future.hpp>
#include <asio/write.hpp>

#include "Console/Output.h"
#include "Host/Command.h"
#include "Host/Connection.h"
#include "Host/DecoderLink.h"
#include "Host/HostEvents.h"
#include "Host/HostLog.h"
#include "Host/IoThread.h"
#include "Host/Plugin.h"
#include "HostFunctions.h"
#include "SocketDataObserver.h"
#include "Tools/Common/Hex.h"
#include "Tools/Common/TerminalText.h"

namespace standin_host {
namespace {

using asio::ip::tcp;
using namespace std::chrono_literals;

TEST(HostCommand, KeepsTheFirstAnswerAndReportsBrokenRules)
{
    const long misusesBefore = HostCommand::Misuses();
    {
        const auto command = MakeCommand(1, true, nullptr);
        command->AddReference(11);
        EXPECT_FALSE(command->IsReleased());
        command->ReplyBuffer("ab", 2);
        command->ReplyRecord({});
        EXPECT_EQ(command->Answer()->bytes, (std::vector<uint8_t>{'a', 'b'}));
        EXPECT_EQ(HostCommand::Misuses(), misusesBefore + 1);
        command->DecReference(12);
        EXPECT_TRUE(command->IsReleased());
    }
    EXPECT_EQ(HostCommand::Misuses(), misusesBefore + 2);
    EXPECT_EQ(HostCommand::Live(), 0);
}

// What a decoder writes reaches a terminal through lines of text, through JSON and through the log.
TEST(Terminal, GetsPrintableCharactersOnly)
{
    const std::pair<const char*, const char*> lines[] = {
        {"a\x1b[31m\x07\x7f", "a\\x1b[31m\\x07\\x7f"},
        {"\xc2\x9bZ\xc2\x80\xc2\x9f", "\\xc2\\x9bZ\\xc2\\x80\\xc2\\x9f"},
        {"\x9bZ", "\\x9bZ"},
        {"\xc3\xa4\xe4\xb8\xad\xf0\x9f\x98\x80", "\xc3\xa4\xe4\xb8\xad\xf0\x9f\x98\x80"},
        {"\xe4\xb8", "\\xe4\\xb8"},
        {"\xed\xa0\x80\xc0\x9b", "\\xed\\xa0\\x80\\xc0\\x9b"},
        {"one\r\ntwo\n", "one two"},
    };
    HostEvents events;
    for (const auto& [text, printed] : lines) {
        EXPECT_EQ(tools::OneLine(text), printed);
    }
    const Notification notification{0x50003, {}, {}, "\x1b\x7f\xc2\x9b\xc2\xa0\x9b"};
    for (const bool json : {false, true}) {
        testing::internal::CaptureStdout();
        Output::Create(json, events)->PrintNotification(notification);
        const std::string out = testing::internal::GetCapturedStdout();
        EXPECT_NE(out.find(json ? "\"\\u001b\\u007f\\u009b\xc2\xa0\xef\xbf\xbd\""
                                : "\\x1b\\x7f\\xc2\\x9b\xc2\xa0\\x9b\n"),
                  std::string::npos)
            << out;
    }
    testing::internal::CaptureStderr();
    SHARESDK_AbnormalOutput("\x1b\xc2\x9b\n", "source", 1);
    Log(LogLevel::Abnormal, "\x1b");
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_NE(log.find("] \\x1b\\xc2\\x9b (source:1)\n"), std::string::npos) << log;
    EXPECT_NE(log.find("] \\x1b\n"), std::string::npos) << log;
}

// A peer on loopback and the host's connection to it.
class Loopback : public testing::Test {
protected:
    std::shared_ptr<Connection> Open()
    {
        std::string reason;
        auto connection =
            Connect(m_thread, m_events, "127.0.0.1", std::to_string(m_acceptor.local_endpoint().port()), 10s,
                    {false, nullptr, &m_events}, reason);
        EXPECT_NE(connection, nullptr) << reason;
        m_peer = m_acceptor.accept();
        return connection;
    }
    void Write(const std::string& content) { asio::write(m_peer, asio::buffer(content)); }

    HostEvents m_events;
    IoThread m_thread;
    asio::io_context m_peerContext;
    tcp::acceptor m_acceptor{m_peerContext, {asio::ip::address_v4::loopback(), 0}};
    tcp::socket m_peer{m_peerContext};
};

// Takes messages that end with a dot; says that it needs 3 bytes more when there is a rest.
class Recorder : public CSocketDataObserver {
public:
    unsigned int OnSocketRecvData(int, const char* data, unsigned int len, unsigned int* needLen,
                                  void*) override
    {
        calls.emplace_back(data, len);
        const auto consumed = static_cast<unsigned int>(calls.back().rfind('.') + 1);
        *needLen = consumed == len ? 0 : 3;
        return consumed;
    }

    std::vector<std::string> calls; // receive thread only
};

TEST_F(Loopback, KeepsTheUnconsumedTailUntilEnoughHasCome)
{
    using Calls = std::vector<std::string>;
    Recorder recorder;
    const auto connection = Open();
    connection->SetObserver(&recorder, nullptr);
    connection->Start(1);
    // Between two tasks the receive thread looks at its sockets: after some of them it has read what was
    // written.
    const auto Read = [&](std::size_t callCount) {
        Calls calls;
        for (int task = 0; task < 3 || (calls.size() < callCount && task < 1'000'000); ++task) {
            calls = asio::post(m_thread.Context(), asio::use_future([&] { return recorder.calls; })).get();
        }
        return calls;
    };
    Write("a.b");
    EXPECT_EQ(Read(1), Calls{"a.b"});
    Write("c");
    EXPECT_EQ(Read(1), Calls{"a.b"});
    Write("d.");
    EXPECT_EQ(Read(2), (Calls{"a.b", "bcd."}));
    connection->ClearObserver();
    connection->Close();
}

TEST_F(Loopback, RefusesAWholeMessageWhenTheSendQueueIsFull)
{
    const auto connection = Open();
    const std::string message(Connection::kMaxQueued, 'x');
    int taken = 0;
    while (taken < 1000 && connection->Send(message)) { // the peer reads nothing
        ++taken;
    }
    EXPECT_EQ(GetLastError(), NET_SOCKET_ERROR_NOBUFS);
    connection->RefuseSends();
    EXPECT_FALSE(connection->Send("x"));
    EXPECT_EQ(GetLastError(), kSocketErrorNotConnected);

    std::string received(static_cast<std::size_t>(taken) * message.size(), '\0');
    asio::read(m_peer, asio::buffer(received)); // what was taken arrives, all of it
    connection->Close();
    asio::error_code error;
    EXPECT_EQ(asio::read(m_peer, asio::buffer(received), error), 0U);
}

TEST_F(Loopback, LinkBeatsThroughThePluginAndReportsASilentAndALostPeer)
{
    const Plugin plugin(TVWALL_PLUGIN_PATH);
    LinkSettings settings;
    settings.heartbeatEvery = 10ms;
    settings.livenessEvery = 1ms; // at least one question between two beats
    testing::internal::CaptureStderr();
    const DecoderLink link(plugin, m_thread, m_events, Open(), settings);
    std::array<char, 8> beat{};
    for (int beatSize = 0; beatSize < 20; ++beatSize) {
        asio::read(m_peer, asio::buffer(beat));
        EXPECT_EQ(tools::HexText(beat.data(), beat.size()), "3131313100000000");
    }
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_NE(log.find("offline"), std::string::npos) << log;
    EXPECT_EQ(log.find("offline"), log.rfind("offline")) << log;
    EXPECT_FALSE(m_events.Lost());
    m_peer.close();
    while (!m_events.Lost() && m_events.Wait(HostEvents::Clock::now() + 10s).event) {
    }
    EXPECT_TRUE(m_events.Lost());
}

} // namespace
} // namespace standin_host
