// Every command, with one thing going wrong, at every place where it can.

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <openssl/crypto.h>
#include <pthread.h>
#include <unistd.h>

#include "AllocationFault.h"
#include "CommandSamples.h"
#include "FakeCommand.h"
#include "FakeNode.h"
#include "HostCalls.h"
#include "LinkTexts.h"
#include "NetProtocolProcTWDECODERDev.h"
#include "PluginExports.h"
#include "TestClock.h"

namespace {

constexpr int POLLS_OF_A_TIMEOUT = 300;

// In the samples, with the digest of the login's password.
constexpr std::array<std::string_view, 4> SECRETS = {
    SOURCE_PASSWORD, SOURCE_USER, "secret",
    "2BB80D537B1DA3E38BD30361AA855686BDE0EACD7162FEF6A25FE97BF527A25B"};

bool IsLogin(const CommandSample& sample) { return sample.nCmdID == 0x101; }

size_t Exchanges(const CommandSample& sample)
{
    return 1 + static_cast<size_t>(std::count(sample.urls.begin(), sample.urls.end(), ' '));
}

// What the host is told when this exchange of the command brings no reply. The first exchange decides, but
// for the login, whose second one does so, too.
std::string AnswerWithout(const CommandSample& sample, size_t nExchange)
{
    return nExchange != 0 && !IsLogin(sample) ? sample.Answer() : sample.AnswerWithoutReply();
}

// A processor, logged in, between a host that queues its commands and a decoder that answers each request at
// the next poll. The received bytes are kept by the host or by the processor.
class Session {
public:
    explicit Session(bool bBuffered) : m_bBuffered(bBuffered)
    {
        fake_host::Reset();
        fake_host::SetLogRecording(false);
        test_clock::SetSleepHook([this](unsigned int ms) { OnSleep(ms); });
        m_pProcessor->Initial(&node, 0, 0, 0);
        m_pReceiver = fake_host::Get().calls.back().pObserver;
        m_pProcessor->Start(nullptr, 0);
        EXPECT_EQ(Run(CommandSamples().front()), CommandSamples().front().Answer());
    }
    ~Session()
    {
        m_pProcessor.reset();
        test_clock::SetSleepHook({});
        EXPECT_EQ(fake_host::LiveBuffers(), m_nBuffers);
        fake_host::Reset();
        OPENSSL_thread_stop(); // its errors of this thread
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Queues and runs it, with a fault behind nAllowed allocations unless that is negative; the answer as
    // FakeCommand tells it.
    std::string Run(const CommandSample& sample, long nAllowed = -1, bool bForGood = false)
    {
        node.frames.clear();
        m_nAnswered = 0;
        nPolls = 0;
        nRetries = 0;
        m_replyBody = sample.replyBody;
        FakeCommand command(sample.nCmdID);
        std::string payload = sample.Payload();
        bQueued = true;
        allocation_fault::g_secrets = SECRETS;
        allocation_fault::g_bWatched = true;
        allocation_fault::Arm(nAllowed, bForGood);
        try {
            m_pProcessor->AddOneCmd(&command, reinterpret_cast<unsigned char*>(payload.data()),
                                    static_cast<unsigned int>(payload.size()));
        } catch (const std::bad_alloc&) {
            bQueued = false;
        }
        const bool bRan = m_pProcessor->ProcDevCmd();
        bFaulted = allocation_fault::Disarm();
        EXPECT_EQ(bRan, bQueued);
        allocation_fault::g_bWatched = false;
        EXPECT_EQ(allocation_fault::g_nUnwiped.exchange(0), 0) << "a secret in freed memory";
        EXPECT_EQ(command.nReferences, 0);
        return command.Answer();
    }

    // The decoder's reply to the last request, or to the one so many numbers behind it.
    std::string Reply(const std::string& errorcode = "0", long nNumbersOff = 0) const
    {
        const allocation_fault::Pause pause;
        const std::string request = node.frames.back();
        const std::string seq = std::to_string(std::stol(Element(request, "seq")) + nNumbersOff);
        const std::string tail = "<session>SID</session><token>TOK</token>" + padding;
        return Frame(ReplyText(Element(request, "url"), seq, errorcode, tail, m_replyBody));
    }

    // As a host's socket does it: what is not consumed is offered again with what comes next, and nothing
    // comes behind a disconnection.
    void Deliver(std::string_view bytes)
    {
        if (node.nDisconnects != 0) {
            return;
        }
        {
            const allocation_fault::Pause pause;
            m_kept += bytes;
        }
        m_kept.erase(0, Offer(*m_pReceiver, m_kept, m_bBuffered));
    }

    // The reply to the last request, in two pieces.
    void DeliverReply()
    {
        constexpr size_t FIRST_PIECE = 100;
        const std::string reply = Reply();
        Deliver(std::string_view(reply).substr(0, FIRST_PIECE));
        Deliver(std::string_view(reply).substr(FIRST_PIECE));
    }

    // Only so many bytes of one reply come at its time, and they begin a failure.
    void CutReply(size_t nExchange, size_t nCut)
    {
        onRequest = [this, nExchange, nCut](size_t nRequest) {
            if (nRequest != nExchange) {
                return DeliverReply();
            }
            const std::string reply = Reply("9");
            nReplyLen = reply.size();
            rest = reply.substr(nCut);
            Deliver(reply.substr(0, nCut));
        };
    }

    FakeNode node;
    std::string padding; // of each reply's header
    std::function<void(size_t nRequest)> onRequest = [this](size_t) { DeliverReply(); };
    std::string rest;     // of the reply that was cut
    size_t nReplyLen = 0; // of all of it
    int nPolls = 0;       // of the last command
    int nRetries = 0;     // likewise
    bool bQueued = false;
    bool bFaulted = false;

private:
    void OnSleep(unsigned int ms)
    {
        ++(ms == 100 ? nPolls : nRetries);
        if (ms == 100 && m_nAnswered < node.frames.size()) {
            onRequest(m_nAnswered++);
        }
    }

    bool m_bBuffered;
    long m_nBuffers = fake_host::LiveBuffers();
    std::unique_ptr<CNetProtocolProcTWDECODERDev> m_pProcessor =
        std::make_unique<CNetProtocolProcTWDECODERDev>();
    CSocketDataObserver* m_pReceiver = nullptr;
    size_t m_nAnswered = 0;
    std::string m_replyBody;
    std::string m_kept;
};

// The parameter: the processor keeps the received bytes, not the host.
class TortureTest : public testing::TestWithParam<bool> {};

TEST_P(TortureTest, EveryCommandSurvivesEveryAllocationThatFails)
{
    Session{GetParam()}; // what the libraries keep for good is there
    for (const CommandSample& sample : CommandSamples()) {
        for (const bool bForGood : {false, true}) {
            SCOPED_TRACE(std::string(sample.szName) + (bForGood ? ", for good" : ", once"));
            int nDisconnects = 0;
            bool bFaulted = true;
            long nAllowed = 0;
            for (; bFaulted; ++nAllowed) {
                SCOPED_TRACE(nAllowed);
                const long nLive = allocation_fault::LiveBytes();
                {
                    Session session(GetParam());
                    session.padding.assign(2000, ' '); // all buffers have to grow
                    const std::string answer = session.Run(sample, nAllowed, bForGood);
                    bFaulted = session.bFaulted;
                    const bool bTimeout = session.nPolls >= POLLS_OF_A_TIMEOUT;
                    const std::string failure = !session.bQueued ? "none"
                                                : bTimeout       ? AnswerWithout(sample, 0)
                                                                 : "failure 20000002";
                    EXPECT_TRUE((session.bQueued && answer == sample.Answer()) ||
                                (bFaulted && answer == failure))
                        << answer;
                    // A processor that keeps the bytes gives the link up when it has no memory for them.
                    EXPECT_LE(session.node.nDisconnects, GetParam() && bTimeout ? 1 : 0);
                    nDisconnects += session.node.nDisconnects;
                    if (session.node.nDisconnects == 0) {
                        EXPECT_EQ(session.Run(sample), sample.Answer());
                    }
                }
                EXPECT_EQ(allocation_fault::LiveBytes(), nLive);
            }
            EXPECT_GT(nAllowed, 10) << "the fault is not armed";
            EXPECT_EQ(nDisconnects > 0, GetParam());
        }
    }
}

TEST(FacadeTortureTest, WithoutMemoryNothingIsRegisteredOrMade)
{
    fake_host::Reset();
    fake_host::Get().registDevResult = 42;
    bool bFaulted = true;
    long nAllowed = 0;
    for (; bFaulted; ++nAllowed) {
        const long nLive = allocation_fault::LiveBytes();
        fake_host::Get().pCreated = nullptr;
        allocation_fault::Arm(nAllowed, true);
        const int nResult = NET_DEV_DECODERDEVSDK_Initial();
        bFaulted = allocation_fault::Disarm();
        EXPECT_TRUE(nResult == 42 || (bFaulted && nResult == -1)) << nAllowed;
        EXPECT_EQ(fake_host::Get().pCreated == nullptr, bFaulted) << nAllowed;
        delete fake_host::Get().pCreated;
        EXPECT_EQ(allocation_fault::LiveBytes(), nLive) << nAllowed;
    }
    EXPECT_GT(nAllowed, 10) << "the fault is not armed";
}

TEST(QueueTortureTest, APayloadIsFreedOnceItsReferenceIsGivenBack)
{
    fake_host::SetLogRecording(false);
    CNetProtocolProcTWDECODERDev processor;
    FakeCommand command(0x50006);
    long nWhileHeld = 0;
    command.onReference = [&](const char*) { nWhileHeld = allocation_fault::LiveBytes(); };
    std::string payload(100'000, 'p');
    const long nBefore = allocation_fault::LiveBytes();
    processor.AddOneCmd(&command, reinterpret_cast<unsigned char*>(payload.data()), 100'000);
    EXPECT_TRUE(processor.ProcDevCmd());
    EXPECT_GE(nWhileHeld, nBefore + 100'000);
    EXPECT_EQ(allocation_fault::LiveBytes(), nBefore);
}

TEST_P(TortureTest, EveryCommandSurvivesEverySendThatFails)
{
    constexpr unsigned int BROKEN = 1;
    constexpr unsigned int NO_BUFFERS = 0x20000009;
    for (const CommandSample& sample : CommandSamples()) {
        Session session(GetParam());
        for (size_t nFailing = 0; nFailing < Exchanges(sample); ++nFailing) {
            SCOPED_TRACE(sample.szName + std::to_string(nFailing));
            std::vector<unsigned int> errors;
            size_t nSend = 0;
            session.node.onSend = [&] {
                if (nSend++ == nFailing) {
                    session.node.sendErrors = errors;
                }
            };
            errors = {NO_BUFFERS, NO_BUFFERS, NO_BUFFERS};
            EXPECT_EQ(session.Run(sample), sample.Answer());
            EXPECT_EQ(session.node.frames.size(), Exchanges(sample));
            EXPECT_EQ(session.nRetries, 3);

            errors = {BROKEN};
            nSend = 0;
            EXPECT_EQ(session.Run(sample), AnswerWithout(sample, nFailing));
            EXPECT_EQ(session.node.frames.size(), nFailing);
            EXPECT_EQ(session.nRetries, 0);
            // Only a login waits for the reply to what was not sent.
            const int nWaited = IsLogin(sample) ? POLLS_OF_A_TIMEOUT : 0;
            EXPECT_EQ(session.nPolls, static_cast<int>(nFailing) + nWaited);
            EXPECT_EQ(session.Run(sample), sample.Answer());
        }
    }
}

TEST_P(TortureTest, AReplyThatStopsAnywhereIsATimeoutAndComesTooLate)
{
    for (const CommandSample& sample : CommandSamples()) {
        Session session(GetParam());
        const auto whole = session.onRequest;
        const std::function<void(size_t)> behindTheRest = [&](size_t) {
            session.Deliver(std::exchange(session.rest, "") + session.Reply());
        };
        for (size_t nExchange = 0; nExchange < Exchanges(sample); ++nExchange) {
            session.nReplyLen = 1;
            for (size_t nCut = 0; nCut < session.nReplyLen; ++nCut) {
                for (const bool bInCompany : {false, true}) {
                    SCOPED_TRACE(sample.szName + std::to_string(nExchange) + ", " + std::to_string(nCut));
                    session.CutReply(nExchange, nCut);
                    EXPECT_EQ(session.Run(sample), AnswerWithout(sample, nExchange));
                    EXPECT_EQ(session.nPolls, static_cast<int>(nExchange) + POLLS_OF_A_TIMEOUT);
                    session.onRequest = bInCompany ? behindTheRest : whole;
                    if (!bInCompany) {
                        session.Deliver(session.rest);
                    }
                    EXPECT_EQ(session.Run(sample), sample.Answer());
                }
            }
        }
    }
}

// Memory that is freed is looked at in every run of a command.
TEST(SecretsTest, TheStackKeepsNone)
{
    constexpr size_t STACK_LEN = size_t{1} << 20;
    CommandSamples(); // made here: whoever makes them has the secrets on his stack
    const std::unique_ptr<char, decltype(&std::free)> stack(
        static_cast<char*>(std::aligned_alloc(4096, STACK_LEN)), &std::free);
    std::fill_n(stack.get(), STACK_LEN, '\0');
    const auto run = [](void* pStack) -> void* {
        Session session(false);
        const auto check = [pStack] {
            std::string seen(STACK_LEN, '\0'); // by the system, which minds no marks of the sanitizer
            const int memory = open("/proc/self/mem", O_RDONLY);
            ASSERT_EQ(pread(memory, seen.data(), STACK_LEN, reinterpret_cast<off_t>(pStack)),
                      off_t{STACK_LEN});
            close(memory);
            for (const std::string_view secret : SECRETS) {
                EXPECT_EQ(seen.find(secret), std::string::npos) << secret;
            }
        };
        session.node.onSend = check;
        for (const char* name : {"ProcDoOptionCmd", "PlayMedia", "StopPlayMedia", "SetWallInfo"}) {
            EXPECT_EQ(session.Run(CommandSampleOf(name)), CommandSampleOf(name).Answer());
            check();
        }
        return nullptr;
    };
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstack(&attributes, stack.get(), STACK_LEN);
    pthread_t thread{};
    ASSERT_EQ(pthread_create(&thread, &attributes, run, stack.get()), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

INSTANTIATE_TEST_SUITE_P(InBothModes, TortureTest, testing::Bool(),
                         [](const auto& mode) { return mode.param ? "Buffered" : "Direct"; });

} // namespace
