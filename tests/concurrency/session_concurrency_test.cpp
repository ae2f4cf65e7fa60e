// The session with real threads: producers, worker, receiver and control thread at once. Meant for the thread
// and address sanitizers as much as for its own checks.

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <mutex>
#include <random>
#include <semaphore>
#include <thread>

#include <openssl/rsa.h>

#include "CommandSamples.h"
#include "HostFunctions.h"
#include "Lock.h"
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
        nNotifiedBytes += std::string(pParam->GetData(), pParam->GetDataLen()).size() * *m_pOne;
    }
    bool SendData(const void* pData, unsigned long nLen) override
    {
        std::lock_guard lock(m_mutex);
        m_frames.emplace_back(static_cast<const char*>(pData), nLen);
        m_changed.notify_one();
        nSends += *m_pOne;
        nSends.notify_all();
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
    // The session must not send or deliver any more.
    void Die() { m_pOne.reset(); }

    std::atomic<size_t> nNotifiedBytes = 0;
    std::atomic<unsigned int> nSends = 0;

private:
    std::unique_ptr<unsigned int> m_pOne =
        std::make_unique<unsigned int>(1); // not locked: a late call is a race and a crash
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
    Link(CSocketDataObserver& observer, PollGate& gate) : m_observer(observer), m_gate(gate) {}

    void Feed(const std::string& bytes, size_t nPiece, bool bBuffered)
    {
        for (size_t at = 0; at < bytes.size() && Keep(bytes.substr(at, nPiece)); at += nPiece) {
            m_gate.Move();
            const unsigned int nConsumed = Offer(m_observer, m_kept, bBuffered);
            m_gate.Move();
            std::lock_guard lock(m_mutex);
            m_kept.erase(0, nConsumed);
        }
    }
    // Overwrites what a receive would still read.
    void Close()
    {
        std::lock_guard lock(m_mutex);
        m_bClosed = true;
        std::fill(m_kept.begin(), m_kept.end(), '\xEE');
    }

private:
    bool Keep(const std::string& bytes)
    {
        std::lock_guard lock(m_mutex);
        m_kept += bytes;
        return !m_bClosed;
    }

    CSocketDataObserver& m_observer;
    PollGate& m_gate;
    std::string m_kept;
    std::mutex m_mutex;
    bool m_bClosed = false;
};

// Numbered as decoders do it, or not; its error code would show in an answer that was read from it.
std::string Notification(size_t nLen)
{
    const std::string seq = nLen % 3 == 0 ? "" : "<seq>" + std::to_string(1'000'000 + nLen) + "</seq>";
    return Frame("<td_command><td_header><url>notifychannelstate</url>" + seq +
                 "<errorcode>9</errorcode></td_header><td_body>" + std::string(nLen, 'n') +
                 "</td_body></td_command>");
}

std::function<void()> g_onLastingWait; // runs when a wait for an event begins that is not signalled
std::function<void()> g_onOpen;        // runs before the messages of a command begin to be kept
std::function<void()> g_onEncipher;    // runs before each encipherment under a public key

} // namespace

// The linker sends every call of these here and gives the originals the other names.
#define TVWALL_WRAPPED(result, name, symbol, parameters, arguments, condition, hook)                         \
    result Real##name parameters __asm__("__real_" symbol);                                                  \
    result Wrapped##name parameters __asm__("__wrap_" symbol);                                               \
    result Wrapped##name parameters                                                                          \
    {                                                                                                        \
        if ((hook) && (condition)) {                                                                         \
            (hook)();                                                                                        \
        }                                                                                                    \
        return Real##name arguments;                                                                         \
    }

TVWALL_WRAPPED(unsigned int, Wait, "_ZNK8CMyEvent9WaitEventEj", (const CMyEvent* pEvent, unsigned int ms),
               (pEvent, ms), RealWait(pEvent, 0) == WAIT_TIMED_OUT, g_onLastingWait)
TVWALL_WRAPPED(void, Open, "_ZN14CReplyHandOver4OpenEv", (CReplyHandOver * pHandOver), (pHandOver), true,
               g_onOpen)
TVWALL_WRAPPED(int, Encipher, "RSA_public_encrypt",
               (int nLen, const unsigned char* pFrom, unsigned char* pTo, RSA* pKey, int nPadding),
               (nLen, pFrom, pTo, pKey, nPadding), true, g_onEncipher)

namespace {

class StopTest : public SessionFixture {
protected:
    StopTest() { LogIn(); }
    ~StopTest() override { g_onLastingWait = g_onOpen = g_onEncipher = nullptr; }

    // Stops the session while the work, on a thread of its own, is inside this callback, which ends once Stop
    // waits. The check comes right after Stop. The work's result.
    std::string StopInside(std::function<void()>& callback, const std::function<std::string()>& work,
                           const std::function<void()>& check)
    {
        std::counting_semaphore<> inside(0);
        std::counting_semaphore<> goOn(0);
        callback = [&] {
            inside.release();
            goOn.acquire();
            goOn.release(); // the next call passes
        };
        g_onLastingWait = [&] { goOn.release(); };
        auto result = std::async(std::launch::async, work);
        inside.acquire();
        session.Stop();
        check();
        goOn.release();
        return result.get();
    }
    const std::function<std::string()> clearWall = [this] { return Run(0x50001, Option(0x60011, "")); };
};

TEST_F(StopTest, WaitsForACommandWhichThenEndsItsWaitWithoutTheTimeoutText)
{
    EXPECT_EQ(StopInside(node.onSend, clearWall, [&] { EXPECT_EQ(nPolls, 1); }), "failure 2000000f");
    EXPECT_EQ(nPolls, 1);
    EXPECT_EQ(fake_host::CountLogs(fake_host::LogLevel::Normal, "NetProtocolProcTWDECODERDevImp", 1940), 0);
}

TEST_F(StopTest, WinsAgainstAReplyThatHasJustCome)
{
    std::function<void()> wait;
    node.onSend = [&] {
        const unsigned int nSeq = CNetProtocolProcTWDECODERDevImp::GetCmdID() - 1; // of the request
        Receive(Frame(ReplyText("dowallclear", std::to_string(nSeq))));
        wait();
    };
    EXPECT_EQ(StopInside(wait, clearWall, [] {}), "failure 2000000f");
}

TEST_F(StopTest, EndsTheTriesToSendToAFullSocket)
{
    node.sendErrors.assign(5, NET_SOCKET_ERROR_NOBUFS);
    const auto check = [&] { EXPECT_EQ(node.sendErrors.size(), 3U); };
    EXPECT_EQ(StopInside(onRetry, clearWall, check), "failure 2000000f");
    EXPECT_EQ(nRetries, 1);
}

class StopEncipheringTest : public StopTest, public testing::WithParamInterface<const char*> {};

// Under a long key each encipherment takes seconds.
TEST_P(StopEncipheringTest, WaitsForOneAtMostAndSendsNothing)
{
    const CommandSample& sample = CommandSampleOf(GetParam());
    const bool bLogin = sample.nOptType == CommandSample::NO_OPTION;
    ReplyWith(ReplyText("dooption", "%SEQ%"));
    std::function<void()> hold;
    std::atomic<int> nEncipherments = 0;
    g_onEncipher = [&] {
        ++nEncipherments;
        hold();
    };
    const auto run = [&] { return Run(sample.nCmdID, sample.Payload()); };
    const auto check = [&] { EXPECT_EQ(nEncipherments, 1); };
    EXPECT_EQ(StopInside(hold, run, check), sample.AnswerWithoutReply());
    EXPECT_EQ(node.frames.size(), bLogin ? 1U : 0U);
}

INSTANTIATE_TEST_SUITE_P(Commands, StopEncipheringTest,
                         testing::Values("PlayMedia", "SetWallInfo", "ProcDoOptionCmd"),
                         [](const auto& handler) { return std::string(handler.param); });

TEST_F(StopTest, WaitsForTheOuterOfTwoCommands)
{
    const CommandSample& info = CommandSampleOf("GetDecSystemInfo");
    std::function<void()> innerHasEnded;
    const auto run = [&] {
        FakeCommand outer(info.nCmdID);
        outer.onAnswer = [&] {
            ReplyWith(ReplyText("dowallclear", "%SEQ%"));
            clearWall();
            innerHasEnded();
        };
        ReplyWith(ReplyText("getsysteminfo", "%SEQ%"));
        Process(session, outer, info.Payload());
        return std::string();
    };
    StopInside(innerHasEnded, run, [&] { EXPECT_EQ(Element(LastRequest(), "url"), "getchannelinfo"); });
}

// What comes just before a command is no answer to it, though the number is guessed.
TEST_F(StopTest, ANumberThatCameWithoutAMessageToKeepIsNotTheLastOne)
{
    const std::string next = std::to_string(CNetProtocolProcTWDECODERDevImp::GetCmdID() + 1);
    g_onOpen = [&] { Receive(Frame(ReplyText("dowallclear", next))); };
    ReplyWith(ReplyText("dowallclear", "%SEQ%", "5"), 2);
    clearWall();
    EXPECT_EQ(nPolls, 2);
}

TEST(CmdIDTest, EachThreadsNumbersGoUpAndNoneComesTwice)
{
    constexpr size_t NUMBERS = 100'000;
    std::vector<unsigned int> all(4 * NUMBERS);
    std::vector<std::jthread> threads;
    for (auto begin = all.begin(); begin != all.end(); begin += NUMBERS) {
        threads.emplace_back([begin] {
            std::generate_n(begin, NUMBERS, &CNetProtocolProcTWDECODERDevImp::GetCmdID);
            EXPECT_TRUE(std::is_sorted(begin, begin + NUMBERS));
        });
    }
    threads.clear(); // waits for them
    std::sort(all.begin(), all.end());
    EXPECT_EQ(std::adjacent_find(all.begin(), all.end()), all.end());
    EXPECT_EQ(all.back() - all.front(), all.size() - 1);
}

TEST_F(StopTest, WaitsForAReceiveUntilItsLastMessage)
{
    std::string bytes = Repeat(Notification(10), 3);
    const auto receive = [&] {
        Receive(bytes);
        return std::string();
    };
    StopInside(node.onDeliver, receive, [&] {
        EXPECT_EQ(node.notifications.size(), 3U);
        std::fill(bytes.begin(), bytes.end(), '\xEE');
    });
}

TEST_F(StopTest, AReceiveThatHasJustBegunParsesNothing)
{
    node.onDropAsked = [this] { session.Stop(); };
    EXPECT_EQ(session.OnSocketRecvData(0, Frame("").data(), 8, nullptr, nullptr), 0U);
}

// One whole life of a processor, as the host leads it, with Stop at a random moment, under a flood of
// notifications. Every command that was queued gets its own answer once and is given back: the decoder
// refuses each second one. Once Stop has returned, nothing is sent, delivered or read. Tells how many
// commands succeeded.
int LiveAndStop(std::mt19937& random, bool bBuffered)
{
    NET_DEV_DECODERDEVSDK_Initial();
    std::unique_ptr<CNetProtocolProc> processor(fake_host::Get().pCreated);
    QueueingNode node;
    processor->Initial(&node, 1, 0, 0);
    PollGate gate;
    test_clock::SetSleepHook([&](unsigned int) { gate.Sleep(); });
    Link link(*fake_host::Get().calls.back().pObserver, gate);
    processor->Start(nullptr, 0);

    constexpr size_t COMMANDS = 40;
    const auto& samples = CommandSamples();
    std::deque<FakeCommand> commands;
    std::string payloads[COMMANDS];
    for (size_t i = 0; i < COMMANDS; ++i) {
        // The handler of the system's information goes on to notify the host.
        const auto& sample = i % 4 == 2 ? CommandSampleOf("GetDecSystemInfo")
                                        : samples[i == 0 ? 0 : random() % samples.size()];
        commands.emplace_back(sample.nCmdID);
        payloads[i] = sample.Payload();
    }
    std::atomic<bool> bStopped = false;
    std::thread producer([&] {
        for (size_t i = 0; i < COMMANDS; ++i) {
            processor->AddOneCmd(&commands[i], reinterpret_cast<unsigned char*>(payloads[i].data()),
                                 static_cast<unsigned int>(payloads[i].size()));
        }
    });
    std::thread worker([&] {
        while (!bStopped) {
            processor->ProcDevCmd();
        }
    });
    std::thread receiver([&] {
        size_t nLen = 10;
        size_t nCommands = 0;
        for (std::string frame = node.Take(); !frame.empty(); frame = node.Take()) {
            const std::string url = Element(frame, "url");
            nCommands += url == "dologin" || url == "getchannelinfo" ? 0 : 1;
            nLen = nLen * 5 / 4;
            const std::string reply = ReplyText(url, Element(frame, "seq"), nCommands % 2 == 1 ? "0" : "5",
                                                "", samples[0].replyBody);
            const std::string bytes = Notification(nLen) + Frame(reply) + Notification(nLen + 1);
            const size_t nPieces = 1 + nLen % 40; // far fewer than the polls before the timeout
            link.Feed(bytes, bytes.size() / nPieces + 1, bBuffered);
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
    // The random moment: so many requests have left, and a little later.
    const auto nWanted = static_cast<unsigned int>(random() % COMMANDS);
    for (unsigned int nSends = node.nSends; nSends < nWanted; nSends = node.nSends) {
        node.nSends.wait(nSends);
    }
    for (auto n = random() % 20; n != 0; --n) {
        std::this_thread::yield();
    }
    processor->Stop();
    node.Die();
    link.Close();
    bStopped = true;
    node.Close();
    for (auto* thread : {&producer, &worker, &receiver, &watcher}) {
        thread->join();
    }
    while (processor->ProcDevCmd()) { // what was queued after Stop
    }
    processor->Quit();
    int nSucceeded = 0;
    int nSilent = 0;
    for (size_t i = 0; i < COMMANDS; ++i) {
        const FakeCommand& command = commands[i];
        EXPECT_LE(command.nAnswers, 1);
        const bool bRefused = command.bFailed && command.record.dwResult == KEST_RESULT_DEVICE_ERROR;
        EXPECT_TRUE(command.nAnswers == 0 || (i % 2 == 0 ? !bRefused : command.bFailed)) << i;
        EXPECT_EQ(command.nReferences, 0);
        const unsigned int nCmdID = command.GetRequestCommand();
        const bool bMayBeSilent = nCmdID == 0x101 || (nCmdID >= 0x50005 && nCmdID <= 0x50008);
        EXPECT_TRUE(command.nAnswers == 1 || bMayBeSilent) << nCmdID;
        nSilent += 1 - command.nAnswers;
        nSucceeded += command.bFailed ? 0 : command.nAnswers.load();
    }
    EXPECT_LE(nSilent, 1); // the one that ran: login and layout commands without a reply are not answered
    return nSucceeded;
}

TEST(ProcessorConcurrencyTest, StopAtAnyMomentLeavesNothingBehind)
{
    constexpr int ROUNDS = 400;
    fake_host::Reset();
    fake_host::SetLogRecording(false);
    std::mt19937 random(2);
    int nSucceeded = 0;
    for (int round = 0; round < ROUNDS; ++round) {
        nSucceeded += LiveAndStop(random, round % 2 == 1);
        fake_host::Get().calls.clear();
    }
    EXPECT_GE(nSucceeded, 5 * ROUNDS);
    EXPECT_EQ(fake_host::LiveBuffers(), 0);
    test_clock::SetSleepHook({});
    fake_host::Reset();
}

} // namespace
