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
#include <sys/syscall.h>

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
class QueueingNode final : public FakeNode {
public:
    void DeliverCommand(unsigned int, CCmdProcParam* param) override
    {
        notifiedBytes += std::string(param->GetData(), param->GetDataLen()).size() * *m_one;
    }
    bool SendData(const void* data, unsigned long len) override
    {
        std::lock_guard lock(m_mutex);
        m_frames.emplace_back(static_cast<const char*>(data), len);
        m_changed.notify_one();
        sends += *m_one;
        sends.notify_all();
        return true;
    }

    // The next frame; "" once the node is closed.
    std::string Take()
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_closed || !m_frames.empty(); });
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
        m_closed = true;
        m_changed.notify_one();
    }
    // The session must not send or deliver any more.
    void Die() { m_one.reset(); }

    std::atomic<size_t> notifiedBytes = 0;
    std::atomic<unsigned int> sends = 0;

private:
    std::unique_ptr<unsigned int> m_one =
        std::make_unique<unsigned int>(1); // not locked: a late call is a race and a crash
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::string> m_frames;
    bool m_closed = false;
};

// The session's sleeps last until bytes go in or have gone in, so that a poll falls into the midst of a
// receive and no reply is missed for want of time.
class PollGate {
public:
    void Move()
    {
        ++m_moves;
        m_moves.notify_all();
    }
    void Sleep()
    {
        m_moves.wait(m_seen);
        m_seen = m_moves;
    }

private:
    std::atomic<unsigned int> m_moves = 0;
    unsigned int m_seen = 0; // of the one worker
};

// Gives the bytes to the observer as a socket would, in pieces, and keeps what is not consumed.
class Link {
public:
    Link(CSocketDataObserver& observer, PollGate& gate) : m_observer(observer), m_gate(gate) {}

    void Feed(const std::string& bytes, size_t piece, bool buffered)
    {
        for (size_t at = 0; at < bytes.size() && Keep(bytes.substr(at, piece)); at += piece) {
            m_gate.Move();
            const unsigned int consumed = Offer(m_observer, m_kept, buffered);
            m_gate.Move();
            std::lock_guard lock(m_mutex);
            m_kept.erase(0, consumed);
        }
    }
    // Overwrites what a receive would still read.
    void Close()
    {
        std::lock_guard lock(m_mutex);
        m_closed = true;
        std::fill(m_kept.begin(), m_kept.end(), '\xEE');
    }

private:
    bool Keep(const std::string& bytes)
    {
        std::lock_guard lock(m_mutex);
        m_kept += bytes;
        return !m_closed;
    }

    CSocketDataObserver& m_observer;
    PollGate& m_gate;
    std::string m_kept;
    std::mutex m_mutex;
    bool m_closed = false;
};

// Numbered as decoders do it, or not; its error code would show in an answer that was read from it.
std::string Notification(size_t len)
{
    const std::string seq = len % 3 == 0 ? "" : "<seq>" + std::to_string(1'000'000 + len) + "</seq>";
    return Frame("<td_command><td_header><url>notifychannelstate</url>" + seq +
                 "<errorcode>9</errorcode></td_header><td_body>" + std::string(len, 'n') +
                 "</td_body></td_command>");
}

std::function<void()> g_onLastingWait; // runs when an endless wait for an event begins that is not signalled
std::function<void()> g_onOpen;        // runs before the messages of a command begin to be kept
std::function<void()> g_onEncipher;    // runs before each encipherment under a public key
std::function<void()> g_onFutex;       // runs before an atomic value is waited for, or a waiter woken

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

TVWALL_WRAPPED(unsigned int, Wait, "_ZNK8CMyEvent9WaitEventEj", (const CMyEvent* event, unsigned int ms),
               (event, ms), ms == 0xFFFFFFFF && RealWait(event, 0) == WAIT_TIMED_OUT, g_onLastingWait)
TVWALL_WRAPPED(void, Open, "_ZN14CReplyHandOver4OpenEv", (CReplyHandOver * handOver), (handOver), true,
               g_onOpen)
TVWALL_WRAPPED(int, Encipher, "RSA_public_encrypt",
               (int len, const unsigned char* from, unsigned char* to, RSA* key, int padding),
               (len, from, to, key, padding), true, g_onEncipher)
TVWALL_WRAPPED(long, Syscall, "syscall",
               (long number, const void* word, int operation, int value, const void* timeout),
               (number, word, operation, value, timeout), number == SYS_futex, g_onFutex)

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
    EXPECT_EQ(StopInside(node.onSend, clearWall, [&] { EXPECT_EQ(polls, 1); }), "failure 2000000f");
    EXPECT_EQ(polls, 1);
    EXPECT_EQ(fake_host::CountLogs(fake_host::LogLevel::Normal, "NetProtocolProcTWDECODERDevImp", 1940), 0);
}

TEST_F(StopTest, WinsAgainstAReplyThatHasJustCome)
{
    std::function<void()> wait;
    node.onSend = [&] {
        const unsigned int seq = CNetProtocolProcTWDECODERDevImp::GetCmdID() - 1; // of the request
        Receive(Frame(ReplyText("dowallclear", std::to_string(seq))));
        wait();
    };
    EXPECT_EQ(StopInside(wait, clearWall, [] {}), "failure 2000000f");
}

TEST_F(StopTest, EndsTheTriesToSendToAFullSocket)
{
    node.sendErrors.assign(5, NET_SOCKET_ERROR_NOBUFS);
    const auto check = [&] { EXPECT_EQ(node.sendErrors.size(), 3U); };
    EXPECT_EQ(StopInside(onRetry, clearWall, check), "failure 2000000f");
    EXPECT_EQ(retries, 1);
}

class StopEncipheringTest : public StopTest, public testing::WithParamInterface<const char*> {};

// Under a long key each encipherment takes seconds.
TEST_P(StopEncipheringTest, WaitsForOneAtMostAndSendsNothing)
{
    const CommandSample& sample = CommandSampleOf(GetParam());
    const bool isLogin = sample.optType == CommandSample::kNoOption;
    ReplyWith(ReplyText("dooption", "%SEQ%"));
    std::function<void()> hold;
    std::atomic<int> encipherments = 0;
    g_onEncipher = [&] {
        ++encipherments;
        hold();
    };
    const auto run = [&] { return Run(sample.cmdID, sample.Payload()); };
    const auto check = [&] { EXPECT_EQ(encipherments, 1); };
    EXPECT_EQ(StopInside(hold, run, check), sample.AnswerWithoutReply());
    EXPECT_EQ(node.frames.size(), isLogin ? 1U : 0U);
}

INSTANTIATE_TEST_SUITE_P(Commands, StopEncipheringTest,
                         testing::Values("PlayMedia", "SetWallInfo", "ProcDoOptionCmd"),
                         [](const auto& handler) { return std::string(handler.param); });

TEST_F(StopTest, WaitsForTheOuterOfTwoCommands)
{
    const CommandSample& info = CommandSampleOf("GetDecSystemInfo");
    std::function<void()> innerHasEnded;
    const auto run = [&] {
        FakeCommand outer(info.cmdID);
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
    EXPECT_EQ(polls, 2);
}

TEST(WakingTest, AWorkerThatWaitsForAReceiveIsWokenAtItsEnd)
{
    CReplyHandOver handOver;
    handOver.Open();
    handOver.Expect(7);
    std::optional<CReplyHandOver::CReceiveScope> receive(std::in_place, handOver);
    handOver.Prepare(7, CReplyHandOver::E_Kind::Notification, "is no reply");
    receive.emplace(handOver);
    handOver.Prepare(7, CReplyHandOver::E_Kind::Reply, "reply");
    std::promise<void> waits, goOn; // which call no wrapped function
    bool woken = false;
    g_onFutex = [&, receiver = std::this_thread::get_id()] {
        if (std::this_thread::get_id() == receiver) {
            woken = true;
        } else {
            waits.set_value();
            goOn.get_future().wait();
        }
    };
    auto taken = std::async(std::launch::async, [&] { return handOver.Take(); });
    waits.get_future().wait();
    receive.reset();
    EXPECT_TRUE(woken);
    goOn.set_value();
    EXPECT_EQ(taken.get()->strText, "reply");
    g_onFutex = nullptr;
}

TEST(CmdIDTest, EachThreadsNumbersGoUpAndNoneComesTwice)
{
    constexpr size_t kNumbers = 100'000;
    std::vector<unsigned int> all(4 * kNumbers);
    std::vector<std::jthread> threads;
    for (auto begin = all.begin(); begin != all.end(); begin += kNumbers) {
        threads.emplace_back([begin] {
            std::generate_n(begin, kNumbers, &CNetProtocolProcTWDECODERDevImp::GetCmdID);
            EXPECT_TRUE(std::is_sorted(begin, begin + kNumbers));
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
int LiveAndStop(std::mt19937& random, bool buffered)
{
    NET_DEV_DECODERDEVSDK_Initial();
    std::unique_ptr<CNetProtocolProc> processor(fake_host::Get().created);
    QueueingNode node;
    processor->Initial(&node, 1, 0, 0);
    PollGate gate;
    test_clock::SetSleepHook([&](unsigned int) { gate.Sleep(); });
    Link link(*fake_host::Get().calls.back().observer, gate);
    processor->Start(nullptr, 0);

    constexpr size_t kCommands = 40;
    const auto& samples = CommandSamples();
    std::deque<FakeCommand> commands;
    std::string payloads[kCommands];
    for (size_t i = 0; i < kCommands; ++i) {
        // The handler of the system's information goes on to notify the host.
        const auto& sample = i % 4 == 2 ? CommandSampleOf("GetDecSystemInfo")
                                        : samples[i == 0 ? 0 : random() % samples.size()];
        commands.emplace_back(sample.cmdID);
        payloads[i] = sample.Payload();
    }
    std::atomic<bool> stopped = false;
    std::thread producer([&] {
        for (size_t i = 0; i < kCommands; ++i) {
            processor->AddOneCmd(&commands[i], reinterpret_cast<unsigned char*>(payloads[i].data()),
                                 static_cast<unsigned int>(payloads[i].size()));
        }
    });
    std::thread worker([&] {
        while (!stopped) {
            processor->ProcDevCmd();
        }
    });
    std::thread receiver([&] {
        size_t len = 10;
        size_t commandCount = 0;
        for (std::string frame = node.Take(); !frame.empty(); frame = node.Take()) {
            const std::string url = Element(frame, "url");
            commandCount += url == "dologin" || url == "getchannelinfo" ? 0 : 1;
            len = len * 5 / 4;
            const std::string reply = ReplyText(url, Element(frame, "seq"), commandCount % 2 == 1 ? "0" : "5",
                                                "", samples[0].replyBody);
            const std::string bytes = Notification(len) + Frame(reply) + Notification(len + 1);
            const size_t pieces = 1 + len % 40; // far fewer than the polls before the timeout
            link.Feed(bytes, bytes.size() / pieces + 1, buffered);
        }
    });
    std::thread watcher([&] {
        while (!stopped) {
            unsigned long len = 0;
            processor->IsOnline();
            processor->GetBeatData(len);
            std::this_thread::yield();
        }
    });
    // The random moment: so many requests have left, and a little later.
    const auto wanted = static_cast<unsigned int>(random() % kCommands);
    for (unsigned int sends = node.sends; sends < wanted; sends = node.sends) {
        node.sends.wait(sends);
    }
    for (auto n = random() % 20; n != 0; --n) {
        std::this_thread::yield();
    }
    processor->Stop();
    node.Die();
    link.Close();
    stopped = true;
    node.Close();
    for (auto* thread : {&producer, &worker, &receiver, &watcher}) {
        thread->join();
    }
    while (processor->ProcDevCmd()) { // what was queued after Stop
    }
    processor->Quit();
    int succeeded = 0;
    int silent = 0;
    for (size_t i = 0; i < kCommands; ++i) {
        const FakeCommand& command = commands[i];
        EXPECT_LE(command.answers, 1);
        const bool refused = command.failed && command.record.dwResult == KEST_RESULT_DEVICE_ERROR;
        EXPECT_TRUE(command.answers == 0 || (i % 2 == 0 ? !refused : command.failed)) << i;
        EXPECT_EQ(command.references, 0);
        const unsigned int cmdID = command.GetRequestCommand();
        const bool mayBeSilent = cmdID == 0x101 || (cmdID >= 0x50005 && cmdID <= 0x50008);
        EXPECT_TRUE(command.answers == 1 || mayBeSilent) << cmdID;
        silent += 1 - command.answers;
        succeeded += command.failed ? 0 : command.answers.load();
    }
    EXPECT_LE(silent, 1); // the one that ran: login and layout commands without a reply are not answered
    return succeeded;
}

TEST(ProcessorConcurrencyTest, StopAtAnyMomentLeavesNothingBehind)
{
    constexpr int kRounds = 400;
    fake_host::Reset();
    fake_host::SetLogRecording(false);
    std::mt19937 random(2);
    int succeeded = 0;
    for (int round = 0; round < kRounds; ++round) {
        succeeded += LiveAndStop(random, round % 2 == 1);
        fake_host::Get().calls.clear();
    }
    EXPECT_GE(succeeded, 5 * kRounds);
    EXPECT_EQ(fake_host::LiveBuffers(), 0);
    test_clock::SetSleepHook({});
    fake_host::Reset();
}

} // namespace
