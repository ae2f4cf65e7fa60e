// What the stand-in host decides by itself: its balances, its connections.

#include <gtest/gtest.h>

#include <array>
#include <condition_variable>
#include <future>
#include <mutex>
#include <string>
#include <vector>

#include <asio/ip/tcp.hpp>
#include <asio/packaged_task.hpp>
#include <asio/post.hpp>
#include <asio/read.hpp>
#include <asio/write.hpp>

#include "Console/Output.h"
#include "Host/Command.h"
#include "Host/Connection.h"
#include "Host/DecoderLink.h"
#include "Host/HostEvents.h"
#include "Host/HostLog.h"
#include "Host/IoThread.h"
#include "Host/MemPool.h"
#include "Host/Plugin.h"
#include "Host/SocketLayer.h"
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
    const long nMisusesBefore = CHostCommand::Misuses();
    {
        const auto pCommand = MakeCommand(1, true, nullptr);
        pCommand->AddReference(11);
        EXPECT_FALSE(pCommand->IsReleased());
        pCommand->ReplyBuffer("ab", 2);
        pCommand->ReplyRecord({});
        EXPECT_EQ(pCommand->Answer()->bytes, (std::vector<uint8_t>{'a', 'b'}));
        EXPECT_EQ(CHostCommand::Misuses(), nMisusesBefore + 1);
        pCommand->DecReference(12);
        EXPECT_TRUE(pCommand->IsReleased());
    }
    EXPECT_EQ(CHostCommand::Misuses(), nMisusesBefore + 2);
    EXPECT_EQ(CHostCommand::Live(), 0);
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
    CHostEvents events;
    for (const auto& [szText, szPrinted] : lines) {
        EXPECT_EQ(tools::OneLine(szText), szPrinted);
    }
    const SNotification notification{0x50003, {}, {}, "\x1b\x7f\xc2\x9b\xc2\xa0\x9b"};
    for (const bool bJson : {false, true}) {
        testing::internal::CaptureStdout();
        COutput::Create(bJson, events)->Notification(notification);
        const std::string strOut = testing::internal::GetCapturedStdout();
        EXPECT_NE(strOut.find(bJson ? "\"\\u001b\\u007f\\u009b\xc2\xa0\xef\xbf\xbd\""
                                    : "\\x1b\\x7f\\xc2\\x9b\xc2\xa0\\x9b\n"),
                  std::string::npos)
            << strOut;
    }
    testing::internal::CaptureStderr();
    SHARESDK_AbnormalOutput("\x1b\xc2\x9b\n", "source", 1);
    Log(ELogLevel::Abnormal, "\x1b");
    const std::string strLog = testing::internal::GetCapturedStderr();
    EXPECT_NE(strLog.find("] \\x1b\\xc2\\x9b (source:1)\n"), std::string::npos) << strLog;
    EXPECT_NE(strLog.find("] \\x1b\n"), std::string::npos) << strLog;
}

// A peer on loopback and the host's connection to it.
class Loopback : public testing::Test {
protected:
    std::shared_ptr<CConnection> Open(bool bBufferedReceive = false)
    {
        std::string strReason;
        auto pConnection =
            Connect(m_thread, m_events, "127.0.0.1", std::to_string(m_acceptor.local_endpoint().port()), 10s,
                    {bBufferedReceive, nullptr, &m_events}, strReason);
        EXPECT_NE(pConnection, nullptr) << strReason;
        m_peer = m_acceptor.accept();
        return pConnection;
    }
    void Write(const std::string& strBytes) { asio::write(m_peer, asio::buffer(strBytes)); }

    // What was written so far has been read: between two tasks the receive thread looks at its sockets.
    void LetReceiveThreadRead()
    {
        for (int nTask = 0; nTask < 3; ++nTask) {
            asio::post(m_thread.Context(), std::packaged_task<void()>([] {})).get();
        }
    }

    CHostEvents m_events;
    CIoThread m_thread;
    asio::io_context m_peerContext;
    tcp::acceptor m_acceptor{m_peerContext, {asio::ip::address_v4::loopback(), 0}};
    tcp::socket m_peer{m_peerContext};
};

// Takes messages that end with a dot; says that it needs 3 bytes more when there is a rest.
class Recorder : public CSocketDataObserver {
public:
    unsigned int OnSocketRecvData(int, const char* pData, unsigned int nLen, unsigned int* pNeedLen,
                                  void*) override
    {
        const std::lock_guard guard(m_lock);
        const std::string strBytes(pData, nLen);
        m_calls.push_back(pNeedLen == nullptr ? "kept " + strBytes : strBytes);
        m_changed.notify_all();
        const auto nConsumed = static_cast<unsigned int>(strBytes.rfind('.') + 1);
        if (pNeedLen != nullptr) {
            *pNeedLen = nConsumed == nLen ? 0 : 3;
        }
        return nConsumed;
    }

    std::vector<std::string> WaitForCalls(std::size_t nCalls)
    {
        std::unique_lock guard(m_lock);
        m_changed.wait_for(guard, 10s, [&] { return m_calls.size() >= nCalls; });
        return m_calls;
    }

private:
    std::mutex m_lock;
    std::condition_variable m_changed;
    std::vector<std::string> m_calls;
};

TEST_F(Loopback, KeepsTheUnconsumedTailUntilEnoughHasCome)
{
    using Calls = std::vector<std::string>;
    Recorder recorder;
    const auto pConnection = Open();
    pConnection->SetObserver(&recorder, nullptr);
    pConnection->Start(1);
    Write("a.b");
    EXPECT_EQ(recorder.WaitForCalls(1), Calls{"a.b"});
    Write("c");
    LetReceiveThreadRead();
    Write("d.");
    EXPECT_EQ(recorder.WaitForCalls(2), (Calls{"a.b", "bcd."}));
    pConnection->ClearObserver();
    pConnection->Close();
}

TEST_F(Loopback, RefusesAWholeMessageWhenTheSendQueueIsFull)
{
    const auto pConnection = Open();
    const std::string strMessage(CConnection::kMaxQueued, 'x');
    int nTaken = 0;
    while (nTaken < 1000 && pConnection->Send(strMessage)) { // the peer reads nothing
        ++nTaken;
    }
    EXPECT_EQ(GetLastError(), NET_SOCKET_ERROR_NOBUFS);
    pConnection->RefuseSends();
    EXPECT_FALSE(pConnection->Send("x"));
    EXPECT_EQ(GetLastError(), SOCKET_ERROR_NOT_CONNECTED);

    std::string strReceived(static_cast<std::size_t>(nTaken) * strMessage.size(), '\0');
    asio::read(m_peer, asio::buffer(strReceived)); // what was taken arrives, all of it
    pConnection->Close();
    asio::error_code error;
    EXPECT_EQ(asio::read(m_peer, asio::buffer(strReceived), error), 0U);
}

TEST_F(Loopback, LinkBeatsThroughThePluginAndReportsASilentAndALostPeer)
{
    const CPlugin plugin(TVWALL_PLUGIN_PATH);
    SLinkSettings settings;
    settings.heartbeatEvery = 10ms;
    settings.livenessEvery = 1ms; // at least one question between two beats
    testing::internal::CaptureStderr();
    const CDecoderLink link(plugin, m_thread, m_events, Open(), settings);
    std::array<char, 8> beat{};
    for (int nBeat = 0; nBeat < 20; ++nBeat) {
        asio::read(m_peer, asio::buffer(beat));
        EXPECT_EQ(tools::HexText(beat.data(), beat.size()), "3131313100000000");
    }
    const std::string strLog = testing::internal::GetCapturedStderr();
    EXPECT_NE(strLog.find("offline"), std::string::npos) << strLog;
    EXPECT_EQ(strLog.find("offline"), strLog.rfind("offline")) << strLog;
    EXPECT_FALSE(m_events.Lost());
    m_peer.close();
    while (!m_events.Lost() && m_events.Wait(CHostEvents::Clock::now() + 10s).bEvent) {
    }
    EXPECT_TRUE(m_events.Lost());
}

} // namespace
} // namespace standin_host
