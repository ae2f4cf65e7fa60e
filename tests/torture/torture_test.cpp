// Every command, with one thing going wrong, at every place where it can.

#include <algorithm>
#include <array>
#include <functional>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <openssl/crypto.h>
#include <pthread.h>
#include <unistd.h>

#include "AllocationFault.h"
#include "CommandSamples.h"
#include "Event.h"
#include "FakeCommand.h"
#include "FakeNode.h"
#include "HostCalls.h"
#include "LinkTexts.h"
#include "MarkupSTL.h"
#include "MonitorTvwComm.h"
#include "NetProtocolProcTWDECODERDev.h"
#include "PluginExports.h"
#include "TestClock.h"

namespace {

constexpr int kPollsOfATimeout = 300;

// In the samples, with the digest of the login's password.
constexpr std::array<std::string_view, 4> kSecrets = {
    kSourcePassword, kSourceUser, "secret",
    "2BB80D537B1DA3E38BD30361AA855686BDE0EACD7162FEF6A25FE97BF527A25B"};

bool IsLogin(const CommandSample& sample) { return sample.cmdID == 0x101; }

size_t Exchanges(const CommandSample& sample)
{
    return 1 + static_cast<size_t>(std::count(sample.urls.begin(), sample.urls.end(), ' '));
}

// What the host is told when this exchange of the command brings no reply. The first exchange decides, but
// for the login, whose second one does so, too.
std::string AnswerWithout(const CommandSample& sample, size_t exchange)
{
    return exchange != 0 && !IsLogin(sample) ? sample.Answer() : sample.AnswerWithoutReply();
}

// A processor, logged in, between a host that queues its commands and a decoder that answers each request at
// the next poll. The received bytes are kept by the host or by the processor.
class Session {
public:
    explicit Session(bool buffered) : m_buffered(buffered)
    {
        fake_host::Reset();
        fake_host::SetLogRecording(false);
        test_clock::SetSleepHook([this](unsigned int ms) { OnSleep(ms); });
        m_processor->Initial(&node, 0, 0, 0);
        m_receiver = fake_host::Get().calls.back().observer;
        m_processor->Start(nullptr, 0);
        EXPECT_EQ(Run(CommandSamples().front()), CommandSamples().front().Answer());
    }
    ~Session()
    {
        m_processor.reset();
        test_clock::SetSleepHook({});
        EXPECT_EQ(fake_host::LiveBuffers(), m_buffers);
        fake_host::Reset();
        OPENSSL_thread_stop(); // its errors of this thread
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Queues and runs it, with a fault behind allowed allocations unless that is negative; the answer as
    // FakeCommand tells it.
    std::string Run(const CommandSample& sample, long allowed = -1, bool forGood = false)
    {
        node.frames.clear();
        m_answered = 0;
        polls = 0;
        retries = 0;
        m_replyBody = sample.replyBody;
        FakeCommand command(sample.cmdID);
        std::string payload = sample.Payload();
        queued = true;
        allocation_fault::g_secrets = kSecrets;
        allocation_fault::g_watched = true;
        const long before = allocation_fault::TakenBytes();
        allocation_fault::Arm(allowed, forGood);
        try {
            m_processor->AddOneCmd(&command, reinterpret_cast<unsigned char*>(payload.data()),
                                   static_cast<unsigned int>(payload.size()));
        } catch (const std::bad_alloc&) {
            queued = false;
        }
        const bool ran = m_processor->ProcDevCmd();
        faulted = allocation_fault::Disarm();
        EXPECT_EQ(ran, queued);
        taken = allocation_fault::TakenBytes() - before;
        allocation_fault::g_watched = false;
        EXPECT_EQ(allocation_fault::g_unwiped.exchange(0), 0) << "a secret in freed memory";
        EXPECT_EQ(command.references, 0);
        return command.Answer();
    }

    // The decoder's reply to the last request, or to the one so many numbers behind it.
    std::string Reply(const std::string& errorcode = "0", long numbersOff = 0) const
    {
        const allocation_fault::Pause pause;
        const std::string request = node.frames.back();
        const std::string seq = std::to_string(std::stol(Element(request, "seq")) + numbersOff);
        const std::string tail = "<session>SID</session><token>TOK</token>" + padding;
        return Frame(ReplyText(Element(request, "url"), seq, errorcode, tail, m_replyBody));
    }

    // As a host's socket does it: what is not consumed is offered again with what comes next, and nothing
    // comes behind a disconnection.
    void Deliver(std::string_view bytes)
    {
        if (node.disconnects != 0) {
            return;
        }
        {
            const allocation_fault::Pause pause;
            m_kept += bytes;
        }
        m_kept.erase(0, Offer(*m_receiver, m_kept, m_buffered));
    }

    // The reply to the last request, in two pieces.
    void DeliverReply()
    {
        constexpr size_t kFirstPiece = 100;
        const std::string reply = Reply();
        Deliver(std::string_view(reply).substr(0, kFirstPiece));
        Deliver(std::string_view(reply).substr(kFirstPiece));
    }

    // Only so many bytes of one reply come at its time, and they begin a failure.
    void CutReply(size_t exchange, size_t cut)
    {
        onRequest = [this, exchange, cut](size_t request) {
            if (request != exchange) {
                return DeliverReply();
            }
            const std::string reply = Reply("9");
            replyLen = reply.size();
            rest = reply.substr(cut);
            Deliver(reply.substr(0, cut));
        };
    }

    FakeNode node;
    std::string padding; // of each reply's header
    std::function<void(size_t request)> onRequest = [this](size_t) { DeliverReply(); };
    std::string rest;    // of the reply that was cut
    size_t replyLen = 0; // of all of it
    int polls = 0;       // of the last command
    int retries = 0;     // likewise
    long taken = 0;      // bytes, likewise
    bool queued = false;
    bool faulted = false;

private:
    void OnSleep(unsigned int ms)
    {
        ++(ms == 100 ? polls : retries);
        if (ms == 100 && m_answered < node.frames.size()) {
            onRequest(m_answered++);
        }
    }

    bool m_buffered;
    long m_buffers = fake_host::LiveBuffers();
    std::unique_ptr<CNetProtocolProcTWDECODERDev> m_processor =
        std::make_unique<CNetProtocolProcTWDECODERDev>();
    CSocketDataObserver* m_receiver = nullptr;
    size_t m_answered = 0;
    std::string m_replyBody;
    std::string m_kept;
};

// The parameter: the processor keeps the received bytes, not the host.
class TortureTest : public testing::TestWithParam<bool> {};

TEST_P(TortureTest, EveryCommandSurvivesEveryAllocationThatFails)
{
    Session{GetParam()}; // what the libraries keep for good is there
    for (const CommandSample& sample : CommandSamples()) {
        for (const bool forGood : {false, true}) {
            SCOPED_TRACE(std::string(sample.name) + (forGood ? ", for good" : ", once"));
            int disconnects = 0;
            bool faulted = true;
            long allowed = 0;
            for (; faulted; ++allowed) {
                SCOPED_TRACE(allowed);
                const long live = allocation_fault::LiveBytes();
                {
                    Session session(GetParam());
                    session.padding.assign(2000, ' '); // all buffers have to grow
                    const std::string answer = session.Run(sample, allowed, forGood);
                    faulted = session.faulted;
                    const bool timedOut = session.polls >= kPollsOfATimeout;
                    const std::string failure = !session.queued ? "none"
                                                : timedOut      ? AnswerWithout(sample, 0)
                                                                : "failure 20000002";
                    EXPECT_TRUE((session.queued && answer == sample.Answer()) ||
                                (faulted && answer == failure))
                        << answer;
                    // A processor that keeps the bytes gives the link up when it has no memory for them.
                    EXPECT_LE(session.node.disconnects, GetParam() && timedOut ? 1 : 0);
                    disconnects += session.node.disconnects;
                    if (session.node.disconnects == 0) {
                        EXPECT_EQ(session.Run(sample), sample.Answer());
                    }
                }
                EXPECT_EQ(allocation_fault::LiveBytes(), live);
            }
            EXPECT_GT(allowed, 10) << "the fault is not armed";
            EXPECT_EQ(disconnects > 0, GetParam());
        }
    }
}

TEST(FacadeTortureTest, WithoutMemoryNothingIsRegisteredOrMade)
{
    fake_host::Reset();
    fake_host::Get().registDevResult = 42;
    bool faulted = true;
    long allowed = 0;
    for (; faulted; ++allowed) {
        const long live = allocation_fault::LiveBytes();
        fake_host::Get().created = nullptr;
        allocation_fault::Arm(allowed, true);
        const int result = NET_DEV_DECODERDEVSDK_Initial();
        faulted = allocation_fault::Disarm();
        EXPECT_TRUE(result == 42 || (faulted && result == -1)) << allowed;
        EXPECT_EQ(fake_host::Get().created == nullptr, faulted) << allowed;
        delete fake_host::Get().created;
        EXPECT_EQ(allocation_fault::LiveBytes(), live) << allowed;
    }
    EXPECT_GT(allowed, 10) << "the fault is not armed";
    ORVA2_CLIENT_TVW::S_MTvw_Del_CavansWindow record;
    const std::string bytes = Guids().U32(1).U32(7);
    allocation_fault::Arm(0, true);
    const bool whole = record.SetData(bytes.data(), static_cast<unsigned int>(bytes.size()));
    EXPECT_TRUE(allocation_fault::Disarm() && !whole);
}

TEST(DocumentTortureTest, ADocumentStaysUsableWithoutMemory)
{
    using namespace allocation_fault;
    CMarkupSTL doc("<a/>", 4);
    EXPECT_TRUE(doc.FindElem());
    Arm(0);
    EXPECT_THROW(doc.IntoElem(), std::bad_alloc);
    EXPECT_FALSE(doc.OutOfElem()) << "was not entered";
    for (const int allowed : {0, 1}) { // none for the text, none for the index
        Arm(allowed);
        EXPECT_THROW(doc.SetDoc("<another/>, too long for a string's own memory"), std::bad_alloc);
        EXPECT_EQ(doc.IsWellFormed(), allowed == 0);
    }
    EXPECT_FALSE(doc.FindElem() || doc.AddElem("c"));
    doc.SetDoc(Repeat("<c/>", 65535).c_str()); // fills the index's first segment
    Arm(0);
    EXPECT_THROW(doc.AddElem("c"), std::bad_alloc);
    EXPECT_TRUE(doc.AddElem("c") && doc.GetDoc().ends_with("<c/><c/>\r\n"));
    const CMyEvent event(false);
    const CMyEvent* events[] = {&event};
    Arm(0);
    EXPECT_EQ(WaitForMultipleObjects(1, events, true, 0), WAIT_TIMED_OUT);
    EXPECT_TRUE(Disarm());
}

TEST(QueueTortureTest, APayloadIsFreedOnceItsReferenceIsGivenBack)
{
    fake_host::SetLogRecording(false);
    CNetProtocolProcTWDECODERDev processor;
    FakeCommand command(0x50006);
    long whileHeld = 0;
    command.onReference = [&](const char*) { whileHeld = allocation_fault::LiveBytes(); };
    std::string payload(100'000, 'p');
    const long before = allocation_fault::LiveBytes();
    processor.AddOneCmd(&command, reinterpret_cast<unsigned char*>(payload.data()), 100'000);
    EXPECT_TRUE(processor.ProcDevCmd());
    EXPECT_GE(whileHeld, before + 100'000);
    EXPECT_EQ(allocation_fault::LiveBytes(), before);
}

TEST_P(TortureTest, EveryCommandSurvivesEverySendThatFails)
{
    constexpr unsigned int kBroken = 1;
    constexpr unsigned int kNoBuffers = 0x20000009;
    for (const CommandSample& sample : CommandSamples()) {
        Session session(GetParam());
        for (size_t failing = 0; failing < Exchanges(sample); ++failing) {
            SCOPED_TRACE(sample.name + std::to_string(failing));
            std::vector<unsigned int> errors;
            size_t sends = 0;
            session.node.onSend = [&] {
                if (sends++ == failing) {
                    session.node.sendErrors = errors;
                }
            };
            errors = {kNoBuffers, kNoBuffers, kNoBuffers};
            EXPECT_EQ(session.Run(sample), sample.Answer());
            EXPECT_LT(session.taken, 80'000);
            EXPECT_EQ(session.node.frames.size(), Exchanges(sample));
            EXPECT_EQ(session.retries, 3);

            errors = {kBroken};
            sends = 0;
            EXPECT_EQ(session.Run(sample), AnswerWithout(sample, failing));
            EXPECT_EQ(session.node.frames.size(), failing);
            EXPECT_EQ(session.retries, 0);
            // Only a login waits for the reply to what was not sent.
            const int waited = IsLogin(sample) ? kPollsOfATimeout : 0;
            EXPECT_EQ(session.polls, static_cast<int>(failing) + waited);
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
        for (size_t exchange = 0; exchange < Exchanges(sample); ++exchange) {
            session.replyLen = 1;
            for (size_t cut = 0; cut < session.replyLen; ++cut) {
                for (const bool inCompany : {false, true}) {
                    SCOPED_TRACE(sample.name + std::to_string(exchange) + ", " + std::to_string(cut));
                    session.CutReply(exchange, cut);
                    EXPECT_EQ(session.Run(sample), AnswerWithout(sample, exchange));
                    EXPECT_EQ(session.polls, static_cast<int>(exchange) + kPollsOfATimeout);
                    session.onRequest = inCompany ? behindTheRest : whole;
                    if (!inCompany) {
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
    constexpr size_t kStackLen = size_t{1} << 20;
    // By a thread of their own: a new thread takes over its maker's registers, which would hold secrets.
    std::thread([] { CommandSamples(); }).join();
    std::vector<char> stack(kStackLen);
    const auto run = [](void* stackBase) -> void* {
        Session session(false);
        const auto check = [stackBase] {
            std::string seen(kStackLen, '\0'); // by the system, which minds no marks of the sanitizer
            const int memory = open("/proc/self/mem", O_RDONLY);
            ASSERT_EQ(pread(memory, seen.data(), kStackLen, reinterpret_cast<off_t>(stackBase)),
                      off_t{kStackLen});
            close(memory);
            for (const std::string_view secret : kSecrets) {
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
    pthread_attr_setstack(&attributes, stack.data(), kStackLen);
    pthread_t thread{};
    ASSERT_EQ(pthread_create(&thread, &attributes, run, stack.data()), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

INSTANTIATE_TEST_SUITE_P(InBothModes, TortureTest, testing::Bool(),
                         [](const auto& mode) { return mode.param ? "Buffered" : "Direct"; });

} // namespace
