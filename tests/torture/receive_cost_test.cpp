// What a message may cost on the receive thread, in bytes allocated and kept.

#include "AllocationFault.h"
#include "FakeHost.h"
#include "HeavyMessages.h"
#include "SessionFixture.h"
#include "TestClock.h"

namespace {

// Runs the work when the session has no command, or at the first poll of one.
void RunIn(CNetProtocolProcTWDECODERDevImp& session, bool inCommand, const std::function<void()>& work)
{
    if (!inCommand) {
        return work();
    }
    FakeCommand login(ORVA_NET_PROTOCOL::KEST_CMD_REQUEST_LOGIN);
    std::function<void()> onPoll = work;
    test_clock::SetSleepHook([&](unsigned int) { std::exchange(onPoll, [] {})(); });
    Process(session, login, LoginPayload("admin", "secret"));
    test_clock::SetSleepHook({});
}

// For a message of n bytes: its copies, two while a command runs; url and seq; the elements that may be open.
long MostTaken(long n, long copies)
{
    constexpr long kMostOpen = 65535;
    return copies * n + n * 5 / 4 + 9 * std::min(n / 3, kMostOpen) + 512;
}

} // namespace

TEST(ReceiveCostTest, AMessageTakesAndKeepsAFewTimesItsSize)
{
    constexpr unsigned int kLargest = 8U << 20U;
    for (const unsigned int len : {600U, 4096U, 50'000U, 196'605U, 262'144U, kLargest}) {
        for (const HeavyMessage& message : HeavyMessages(len)) {
            for (int mode = len == kLargest ? 3 : 0; mode <= 3; ++mode) { // the largest in one mode
                const long copies = 1 + mode % 2;
                const bool buffered = mode / 2 == 1;
                SCOPED_TRACE(message.what + (", mode " + std::to_string(mode)));
                const std::string frame = Frame(message.text);
                const long frameLen = static_cast<long>(frame.size());
                FakeNode node;
                CNetProtocolProcTWDECODERDevImp session;
                session.Start(&node, nullptr, 0);
                RunIn(session, copies == 2, [&] {
                    const long live = allocation_fault::LiveBytes();
                    const long taken = allocation_fault::TakenBytes() - fake_host::PoolBytes(); // the host's
                    EXPECT_EQ(Offer(session, frame, buffered), frame.size());
                    EXPECT_LE(allocation_fault::TakenBytes() - fake_host::PoolBytes() - taken,
                              MostTaken(frameLen, copies));
                    EXPECT_LE(allocation_fault::LiveBytes() - live, copies * frameLen + 1024);
                });
            }
        }
    }
}

TEST(ReceiveCostTest, ACommandKeepsTheAwaitedReplyAndOneOtherAndOnlyWhileItRuns)
{
    constexpr long kLen = 100'000;
    FakeNode node;
    CNetProtocolProcTWDECODERDevImp session;
    session.Start(&node, nullptr, 0);
    const long before = allocation_fault::LiveBytes();
    RunIn(session, true, [&] {
        const unsigned int awaited = CNetProtocolProcTWDECODERDevImp::GetCmdID() - 1;
        const long live = allocation_fault::LiveBytes();
        for (const unsigned int seq : {awaited, awaited, 1U, 2U, awaited + 2}) {
            Offer(session, Frame(ReplyText("", std::to_string(seq), "5", std::string(kLen, 'x'))));
        }
        EXPECT_LE(allocation_fault::LiveBytes() - live, 3 * kLen + 4096);
    });
    EXPECT_LE(allocation_fault::LiveBytes() - before, kLen + 4096);
}
