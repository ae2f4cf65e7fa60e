// What a message may cost on the receive thread, in bytes allocated and kept.

#include "AllocationFault.h"
#include "FakeHost.h"
#include "HeavyMessages.h"
#include "SessionFixture.h"
#include "TestClock.h"

namespace {

// Runs the work when the session has no command, or at the first poll of one.
void RunIn(CNetProtocolProcTWDECODERDevImp& session, bool bCommand, const std::function<void()>& work)
{
    if (!bCommand) {
        return work();
    }
    FakeCommand login(ORVA_NET_PROTOCOL::KEST_CMD_REQUEST_LOGIN);
    std::function<void()> onPoll = work;
    test_clock::SetSleepHook([&](unsigned int) { std::exchange(onPoll, [] {})(); });
    Process(session, login, LoginPayload("admin", "secret"));
    test_clock::SetSleepHook({});
}

// For a message of n bytes: its copies, two while a command runs; url and seq; the elements that may be open.
long MostTaken(long n, long nCopies)
{
    constexpr long MOST_OPEN = 65535;
    return nCopies * n + n * 5 / 4 + 9 * std::min(n / 3, MOST_OPEN) + 512;
}

} // namespace

TEST(ReceiveCostTest, AMessageTakesAndKeepsAFewTimesItsSize)
{
    for (const size_t nLen : {600U, 4096U, 50'000U, 196'605U, 262'144U, 1U << 20U, 8U << 20U}) {
        for (const HeavyMessage& message : HeavyMessages(nLen)) {
            for (const int nMode : {0, 1, 2, 3}) {
                const long nCopies = 1 + nMode % 2;
                const bool bBuffered = nMode / 2 == 1;
                SCOPED_TRACE(message.szWhat + (", mode " + std::to_string(nMode)));
                const std::string frame = Frame(message.text);
                const long nFrame = static_cast<long>(frame.size());
                FakeNode node;
                CNetProtocolProcTWDECODERDevImp session;
                session.Start(&node, nullptr, 0);
                RunIn(session, nCopies == 2, [&] {
                    const long nLive = allocation_fault::LiveBytes();
                    const long nTaken = allocation_fault::TakenBytes() - fake_host::PoolBytes(); // the host's
                    EXPECT_EQ(Offer(session, frame, bBuffered), frame.size());
                    EXPECT_LE(allocation_fault::TakenBytes() - fake_host::PoolBytes() - nTaken,
                              MostTaken(nFrame, nCopies));
                    EXPECT_LE(allocation_fault::LiveBytes() - nLive, nCopies * nFrame + 1024);
                });
            }
        }
    }
}

TEST(ReceiveCostTest, ACommandKeepsTheAwaitedReplyAndOneOtherAndOnlyWhileItRuns)
{
    constexpr long LEN = 100'000;
    FakeNode node;
    CNetProtocolProcTWDECODERDevImp session;
    session.Start(&node, nullptr, 0);
    const long nBefore = allocation_fault::LiveBytes();
    RunIn(session, true, [&] {
        const unsigned int nAwaited = CNetProtocolProcTWDECODERDevImp::GetCmdID() - 1;
        const long nLive = allocation_fault::LiveBytes();
        for (const unsigned int nSeq : {nAwaited, nAwaited, 1U, 2U, nAwaited + 2}) {
            Offer(session, Frame(ReplyText("", std::to_string(nSeq), "5", std::string(LEN, 'x'))));
        }
        EXPECT_LE(allocation_fault::LiveBytes() - nLive, 3 * LEN + 4096);
    });
    EXPECT_LE(allocation_fault::LiveBytes() - nBefore, LEN + 4096);
}
