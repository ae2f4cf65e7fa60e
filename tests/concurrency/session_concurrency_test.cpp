// The session with real threads: producers, worker, receiver and control thread at once. Meant for the thread
// and address sanitizers as much as for its own checks.

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <random>
#include <thread>

#include "NetProtocolProcTWDECODERDev.h"
#include "PluginExports.h"
#include "SessionFixture.h"
#include "TestClock.h"

using namespace ORVA_NET_PROTOCOL;

namespace {

// Hands every frame that is sent to the thread that plays the decoder.
class QueueingNode final : public CNetNode {
public:
    void DeliverCommand(unsigned int, CCmdProcParam* pParam) override
    {
        nNotifiedBytes += std::string(pParam->GetData(), pParam->GetDataLen()).size();
        ++nNotifications;
    }
    bool SendData(const void* pData, unsigned long nLen) override
    {
        std::lock_guard lock(m_mutex);
        m_frames.emplace_back(static_cast<const char*>(pData), nLen);
        m_changed.notify_one();
        return true;
    }
    bool IsDropRecvData() override { return false; }
    void Disconnect() override {}
    GUID GetNodeID() const override { return {}; }

    // The next frame; "" once the node is closed.
    std::string Take()
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_bClosed || !m_frames.empty(); });
        if (m_frames.empty()) {
            return "";
        }
        std::string frame = std::move(m_frames.front());
        m_frames.pop_front();
        return frame;
    }
    void Close()
    {
        std::lock_guard lock(m_mutex);
        m_bClosed = true;
        m_changed.notify_one();
    }

    std::atomic<size_t> nNotifiedBytes = 0;
    std::atomic<int> nNotifications = 0;

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::string> m_frames;
    bool m_bClosed = false;
};

// The session's sleeps last until bytes go in or have gone in, so that a poll falls into the midst of a
// receive and no reply is missed for want of time.
class PollGate {
public:
    void Move()
    {
        ++m_nMoves;
        m_nMoves.notify_all();
    }
    void Sleep()
    {
        m_nMoves.wait(m_nSeen);
        m_nSeen = m_nMoves;
    }

private:
    std::atomic<unsigned int> m_nMoves = 0;
    unsigned int m_nSeen = 0; // of the one worker
};

// Gives the bytes to the observer as a socket would, in pieces, and keeps what is not consumed.
class Link {
public:
    explicit Link(CSocketDataObserver& observer, PollGate* pGate = nullptr)
        : m_observer(observer), m_pGate(pGate)
    {
    }

    void Feed(const std::string& bytes, size_t nPiece, bool bBuffered)
    {
        for (size_t at = 0; at < bytes.size(); at += nPiece) {
            m_kept += bytes.substr(at, nPiece);
            Move();
            unsigned int nNeed = 0;
            m_kept.erase(0, m_observer.OnSocketRecvData(0, m_kept.data(),
                                                        static_cast<unsigned int>(m_kept.size()),
                                                        bBuffered ? nullptr : &nNeed, nullptr));
            Move();
        }
    }

private:
    void Move()
    {
        if (m_pGate != nullptr) {
            m_pGate->Move();
        }
    }

    CSocketDataObserver& m_observer;
    PollGate* m_pGate;
    std::string m_kept;
};

// A message without a number, of growing length; its error code would show in an answer that was read from
// it.
std::string Notification(size_t nLen)
{
    return Frame(
        "<td_command><td_header><url>notifychannelstate</url><errorcode>9</errorcode></td_header><td_body>" +
        std::string(nLen, 'n') + "</td_body></td_command>");
}

void ShortSleep(unsigned int) { std::this_thread::sleep_for(std::chrono::microseconds(20)); }

class SessionConcurrencyTest : public testing::TestWithParam<bool> {
protected:
    SessionConcurrencyTest()
    {
        fake_host::Reset();
        fake_host::SetLogRecording(false);
        test_clock::SetSleepHook([this](unsigned int) { gate.Sleep(); });
    }
    ~SessionConcurrencyTest() override
    {
        test_clock::SetSleepHook({});
        fake_host::Reset();
    }

    PollGate gate;
};

TEST_P(SessionConcurrencyTest, EveryAnswerBelongsToItsOwnRequestUnderAFloodOfNotifications)
{
    constexpr int EXCHANGES = 4000;
    const bool bBuffered = GetParam();
    QueueingNode node;
    CNetProtocolProcTWDECODERDevImp session;
    session.Start(&node, nullptr, 0);

    std::thread decoder([&] {
        Link link(session, &gate);
        std::mt19937 random(1);
        size_t nLen = 0;
        for (std::string frame = node.Take(); !frame.empty(); frame = node.Take()) {
            const std::string url = Element(frame, "url");
            const std::string seq = Element(frame, "seq");
            // Odd numbers succeed, even ones are refused; the login always succeeds.
            const bool bOk = url != "dowallclear" || std::stoul(seq) % 2 == 1;
            const std::string reply =
                Frame(ReplyText(url, seq, bOk ? "0" : "5", "<session>S</session><token>T</token>"));
            nLen = nLen * 9 / 8 % 60000 + 1;
            const std::string bytes =
                Notification(nLen) + reply + Notification(nLen + 1) + Notification(nLen / 2);
            const size_t nPieces = 1 + random() % 40; // far fewer than the polls before the timeout
            link.Feed(bytes, bytes.size() / nPieces + 1, bBuffered);
        }
    });

    FakeCommand login(KEST_CMD_REQUEST_LOGIN);
    std::string payload = LoginPayload("admin", "secret");
    session.ProcOneCommand(&login, reinterpret_cast<unsigned char*>(payload.data()), 744);
    EXPECT_FALSE(login.bFailed);
    std::string clearWall = Option(0x60011, "");
    for (int i = 0; i < EXCHANGES; ++i) {
        FakeCommand command(0x50001);
        if (i % 3 == 0) {
            CNetProtocolProcTWDECODERDevImp::GetCmdID(); // so that odd and even numbers come up
        }
        const unsigned int nNext = CNetProtocolProcTWDECODERDevImp::GetCmdID() + 1;
        session.ProcOneCommand(&command, reinterpret_cast<unsigned char*>(clearWall.data()),
                               static_cast<unsigned int>(clearWall.size()));
        EXPECT_EQ(command.nAnswers, 1);
        EXPECT_EQ(command.bFailed, nNext % 2 == 0) << i;
        if (command.bFailed) {
            EXPECT_EQ(command.record.dwResult, KEST_RESULT_DEVICE_ERROR);
        }
    }
    node.Close();
    decoder.join();
    EXPECT_EQ(node.nNotifications, 3 * (EXCHANGES + 2));
    EXPECT_EQ(fake_host::LiveBuffers(), 0);
}

INSTANTIATE_TEST_SUITE_P(Modes, SessionConcurrencyTest, testing::Bool(), [](const auto& mode) {
    return mode.param ? std::string("Buffered") : std::string("Direct");
});

// One whole life of a processor, as the host leads it, with Stop at a random moment. Every command that was
// queued is answered once and given back.
void LiveAndStop(std::mt19937& random)
{
    NET_DEV_DECODERDEVSDK_Initial();
    std::unique_ptr<CNetProtocolProc> processor(fake_host::Get().pCreated);
    QueueingNode node;
    processor->Initial(&node, 1, 0, 0);
    auto& observer = *fake_host::Get().calls.back().pObserver;
    processor->Start(nullptr, 0);

    std::deque<FakeCommand> commands;
    for (int i = 0; i < 40; ++i) {
        commands.emplace_back(i == 0 ? 0x101U : 0x50001U);
    }
    std::atomic<bool> bStopped = false;
    std::thread producers[2];
    for (size_t p = 0; p < 2; ++p) {
        producers[p] = std::thread([&, p] {
            for (size_t i = p; i < commands.size(); i += 2) {
                std::string payload = i == 0 ? LoginPayload("a", "b") : Option(0x60011, "");
                processor->AddOneCmd(&commands[i], reinterpret_cast<unsigned char*>(payload.data()),
                                     static_cast<unsigned int>(payload.size()));
            }
        });
    }
    std::thread worker([&] {
        while (!bStopped) {
            processor->ProcDevCmd();
        }
    });
    std::thread receiver([&] {
        Link link(observer);
        for (std::string frame = node.Take(); !frame.empty(); frame = node.Take()) {
            link.Feed(Notification(10) + Frame(ReplyText(Element(frame, "url"), Element(frame, "seq"))),
                      1 << 20, false);
        }
    });
    std::thread watcher([&] {
        while (!bStopped) {
            unsigned long nLen = 0;
            processor->IsOnline();
            processor->GetBeatData(nLen);
            std::this_thread::yield();
        }
    });
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 3000)); // the random moment
    processor->Stop();
    bStopped = true;
    node.Close();
    for (auto* thread : {&producers[0], &producers[1], &worker, &receiver, &watcher}) {
        thread->join();
    }
    while (processor->ProcDevCmd()) { // what was queued after Stop
    }
    processor->Quit();
    for (const auto& command : commands) {
        EXPECT_LE(command.nAnswers, 1);
        EXPECT_EQ(command.nReferences, 0);
    }
}

TEST(ProcessorConcurrencyTest, StopAtAnyMomentLeavesNothingBehind)
{
    fake_host::Reset();
    fake_host::SetLogRecording(false);
    test_clock::SetSleepHook(ShortSleep);
    std::mt19937 random(2);
    for (int round = 0; round < 200; ++round) {
        LiveAndStop(random);
        fake_host::Get().calls.clear();
    }
    EXPECT_EQ(fake_host::LiveBuffers(), 0);
    test_clock::SetSleepHook({});
    fake_host::Reset();
}

} // namespace
