// What the stand-in host decides by itself: its balances, its connections, what it makes of answers, whatever
// they hold; tests/e2e has its commands, answers and complaints in lines of text.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

#include <asio/ip/tcp.hpp>
#include <asio/post.hpp>
#include <asio/read.hpp>
#include <asio/use_future.hpp>
#include <asio/write.hpp>
#include <malloc.h>

#include "Base/WordSplitting.h"
#include "Commands/Records/DeviceCodes.h"
#include "Console/AnswerText.h"
#include "Console/Output.h"
#include "Host/Backoff.h"
#include "Host/Command.h"
#include "Host/Connection.h"
#include "Host/DecoderLink.h"
#include "Host/Frames/ExchangeWatch.h"
#include "Host/HostEvents.h"
#include "Host/HostLog.h"
#include "Host/IoThread.h"
#include "Host/MemPool.h"
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

TEST(Backoff, DoublesItsWaitsUpToHalfAMinuteAndLeavesHalfOfThemToChance)
{
    Backoff backoff(7);
    std::vector<long> seen;
    for (const long bound : {2000, 4000, 8000, 16'000, 30'000, 30'000, 30'000}) {
        seen.push_back(backoff.Next().count());
        EXPECT_GE(seen.back(), bound / 2);
        EXPECT_LE(seen.back(), bound);
    }
    EXPECT_NE(seen[5], seen[6]);
    backoff.Reset();
    EXPECT_LE(backoff.Next(), 2s);
}

std::string Frame(const std::string& payload)
{
    const auto size = static_cast<uint32_t>(payload.size());
    return "1111" + std::string(reinterpret_cast<const char*>(&size), sizeof size) + payload;
}

std::string Message(const char* url, const std::string& seq, const std::string& code)
{
    return Frame("<td_command><td_header><seq>1</seq><url>" + std::string(url) + "</url><seq>" + seq +
                 "</seq><errorcode>" + code + "</errorcode></td_header><td_body>");
}

void Receive(ExchangeWatch& watch, std::string_view bytes, std::size_t piece)
{
    for (; !bytes.empty(); bytes.remove_prefix(std::min(piece, bytes.size()))) {
        watch.Received(bytes.substr(0, piece));
    }
}

// Runs a story of requests (s7), replies (r7=201), notifications (n7=201), the answer (a), and the end of the
// command (e); gives the decoder's code that the last command is told.
std::string CodeTold(const char* story)
{
    const auto watch = std::make_shared<ExchangeWatch>();
    HostCommandHolder command;
    std::istringstream steps(story);
    for (std::string step; steps >> step;) {
        if (step == "e" || command == nullptr) {
            watch->Forget();
            command = MakeCommand(1, true, nullptr);
            command->WatchExchanges(watch);
        }
        const std::size_t equals = step.find('=');
        const std::string seq = step.substr(1, equals - 1);
        if (step == "a") {
            command->ReplyRecord({});
        } else if (step[0] == 's') {
            watch->Sent(Message("dowindowtop", seq, ""));
        } else if (step[0] != 'e') {
            const char* url = step[0] == 'r' ? "dowindowtop" : "notifychannelstate";
            Receive(*watch, Frame("") + std::string(64, 'h') + Message(url, seq, step.substr(equals + 1)), 5);
        }
    }
    command->AddReference(2);
    command->DecReference(2); // the plug-in is done with it
    const auto code = command->LastExchange().deviceCode;
    return code ? std::to_string(*code) : "none";
}

TEST(ExchangeWatch, JoinsAnAnswerWithTheReplyToTheLastRequestBeforeIt)
{
    const std::pair<const char*, const char*> stories[] = {
        {"s7 r7=201 a", "201"},         {"s7 r7= a", "0"},
        {"s7 r7=5 s8 r8=105 a", "105"}, {"s7 r7=5 s8 r7=6 a", "none"},
        {"s7 r7=0 a s8 r8=77", "0"}, // a question of the plug-in's own, after the answer
        {"s7 a r7=201", "none"},        {"s7 a e r7=201 s8 r7=201 a", "none"},
        {"s7 r7=201 a e a", "none"}, // refused before anything was sent
        {"s7 n7=201 a", "none"},        {"s7 n7=201 r8=202 r7=3 r7=4 n7=5 a", "3"},
        {"s7 r4294967303=9 a", "9"}, // 7 in 32 bits
        {"s7 r7=201", "201"},
    };
    for (const auto& [story, code] : stories) {
        EXPECT_EQ(CodeTold(story), code) << story;
    }
}

TEST(ExchangeWatch, KeepsLittleOfALongMessageAndFindsTheNext)
{
    ExchangeWatch watch;
    const std::string late = std::string(ExchangeWatch::kMostRead, ' ') + "<td_command><td_header>";
    std::string longReply = Message("dowindowtop", "7", "201");
    longReply.replace(0, longReply.size(), Frame(longReply.substr(8) + std::string(64UL << 20U, '<')));
    const auto before = ::mallinfo2().uordblks + ::mallinfo2().hblkhd;
    watch.Sent(Message("dowindowtop", "7", ""));
    Receive(watch, Frame(late + Message("dowindowtop", "7", "1").substr(31)), 65536);
    Receive(watch, std::string_view(longReply).substr(0, longReply.size() - 1), 65536);
    EXPECT_EQ(watch.Last().deviceCode, std::nullopt); // it has not come yet
    EXPECT_LT(::mallinfo2().uordblks + ::mallinfo2().hblkhd, before + 4 * ExchangeWatch::kMostRead);
    Receive(watch, std::string_view(longReply).substr(longReply.size() - 1), 1);
    EXPECT_EQ(watch.Last().deviceCode, 201U);
    watch.Sent(Message("dowindowtop", "8", ""));
    Receive(watch, Message("dowindowtop", "8", "202"), 3);
    EXPECT_EQ(watch.Last().deviceCode, 202U);
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

ConsoleCommand Parse(const std::string& line) { return ParseScriptLine(SplitLine(line)); }

TEST(HostAnswers, HoldNoPasswordWhereverTheyEnd)
{
    ::setenv("TVWALL_SOURCE_PASSWORD", "env-secret", 1);
    const ConsoleCommand command = Parse("media play 1 0 a:1 --channel 1 --source-user u");
    ::unsetenv("TVWALL_SOURCE_PASSWORD");
    // The answer repeats the record behind another head.
    HostAnswer answer{HostAnswer::Kind::Buffer, 0,
                      ByteWriter().Zeros(8).Append(command.payload).Take().bytes};
    for (; !answer.bytes.empty(); answer.bytes.pop_back()) {
        HostAnswer shown = answer;
        HideSecrets(command, shown);
        const std::string content(shown.bytes.begin(), shown.bytes.end());
        ASSERT_EQ(content.find("env-s"), std::string::npos);
        ASSERT_EQ(content.size(), answer.bytes.size());
    }
}

TEST(HostAnswers, AreReadableWhateverTheyHold)
{
    const auto text = [](const char* typed, ByteWriter& answer) {
        return ReadEnding(Parse(typed),
                          {HostAnswer{HostAnswer::Kind::Buffer, 0, answer.Take().bytes}, {}, false, false},
                          {})
            .text;
    };
    const Record head = ByteWriter().U32(0x60010).U32(8).Zeros(8).Take();
    EXPECT_EQ(text("config", ByteWriter().Append(head).Zeros(16).U32(2).U32(3).Text("e\x1b", 3)),
              "the decoder says\n  name:      e\\x1b\n  identity:  2\n  run mode:  3");
    EXPECT_EQ(text("layout get", ByteWriter().U32(2).U32(2).U32(1).U32(8).Zeros(256).I32(-1).U32(0)),
              "2 rows, 2 columns\n  row 0:  -  -\n  row 1:  -  -\n  at 4294967295 0:  8");
    EXPECT_EQ(text("audio get", ByteWriter().Append(head).Zeros(32).U32(1).I32(-5).U32(0)),
              "windows with sound\n  WINDOW  INDEX  CHANNEL\n  -5      -      -");
    for (const char* typed :
         {"wall clear", "info", "config", "layout get", "window-config get", "audio get", "group get"}) {
        EXPECT_NE(text(typed, ByteWriter().Zeros(5)).find("no whole record"), std::string::npos) << typed;
    }
}

TEST(MemPool, RefusesWhatAnUnfinishedMessageTakesBeyondItsLimit)
{
    const std::string block(MemPool::kMaxBytes / 2, 'x');
    MemPool& pool = MemPool::Instance();
    const char* handle = pool.New(block);
    EXPECT_THROW(pool.New(block), std::bad_alloc);
    EXPECT_THROW(pool.Append(handle, block), std::bad_alloc);
    EXPECT_EQ(pool.Bytes(handle).size(), block.size());
    pool.TruncateFront(handle, block.size());
    EXPECT_TRUE(pool.Append(handle, block));
    pool.Delete(handle);
    pool.Delete(pool.New(block));
    EXPECT_EQ(pool.LiveBuffers(), 0U);
}

// A peer on loopback and the host's connection to it.
class Loopback : public testing::Test {
protected:
    std::shared_ptr<Connection> Open()
    {
        std::string reason;
        auto connection =
            Connect(thread, events, "127.0.0.1", std::to_string(acceptor.local_endpoint().port()), 10s,
                    {false, nullptr, nullptr, &events}, reason);
        EXPECT_NE(connection, nullptr) << reason;
        peer = acceptor.accept();
        return connection;
    }
    void Write(const std::string& content) { asio::write(peer, asio::buffer(content)); }

    HostEvents events;
    IoThread thread;
    asio::io_context peerContext;
    tcp::acceptor acceptor{peerContext, {asio::ip::address_v4::loopback(), 0}};
    tcp::socket peer{peerContext};
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
    const std::pair<const char*, Calls> pieces[] = {
        {"a.b", {"a.b"}}, {"c", {"a.b"}}, {"d.", {"a.b", "bcd."}}};
    Recorder recorder;
    const auto connection = Open();
    connection->SetObserver(&recorder, nullptr);
    connection->Start(1);
    for (const auto& [piece, wanted] : pieces) {
        Write(piece);
        Calls calls;
        // Between two tasks the receive thread looks at its sockets: after some of them it has read the
        // piece.
        for (int task = 0; task < 3 || (calls.size() < wanted.size() && task < 1'000'000); ++task) {
            calls = asio::post(thread.Context(), asio::use_future([&] { return recorder.calls; })).get();
        }
        EXPECT_EQ(calls, wanted);
    }
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
    asio::read(peer, asio::buffer(received)); // what was taken arrives, all of it
    connection->Close();
    asio::error_code error;
    EXPECT_EQ(asio::read(peer, asio::buffer(received), error), 0U);
}

TEST_F(Loopback, LinkBeatsThroughThePluginAndReportsASilentAndALostPeer)
{
    const Plugin plugin(TVWALL_PLUGIN_PATH);
    LinkSettings settings;
    settings.heartbeatEvery = 10ms;
    settings.livenessEvery = 1ms; // at least one question between two beats
    testing::internal::CaptureStderr();
    const DecoderLink link(plugin, thread, events, Open(), settings);
    std::array<char, 8> beat{};
    for (int beatSize = 0; beatSize < 20; ++beatSize) {
        asio::read(peer, asio::buffer(beat));
        EXPECT_EQ(tools::HexText(beat.data(), beat.size()), "3131313100000000");
    }
    const std::string log = testing::internal::GetCapturedStderr();
    EXPECT_NE(log.find("offline"), std::string::npos) << log;
    EXPECT_EQ(log.find("offline"), log.rfind("offline")) << log;
    EXPECT_FALSE(events.Lost());
    peer.close();
    while (!events.Lost() && events.Wait(HostEvents::Clock::now() + 10s).event) {
    }
    EXPECT_TRUE(events.Lost());
}

} // namespace
} // namespace standin_host
