// What a message may cost on the receive thread, in bytes allocated and kept.

#include <gtest/gtest.h>

#include "AllocationFault.h"
#include "FakeHost.h"
#include "FakeNode.h"
#include "HeavyMessages.h"
#include "Session/NetProtocolProcTWDECODERDevImp.h"

TEST(ReceiveCostTest, AMessageTakesFourTimesItsSizeAndKeepsItTwice)
{
    constexpr size_t LEN = size_t{1} << 20;
    for (const HeavyMessage& message : HeavyMessages(LEN)) {
        for (const bool bBuffered : {false, true}) {
            SCOPED_TRACE(std::string(message.szWhat) + (bBuffered ? ", held by the plug-in" : ""));
            const std::string frame = Frame(message.text);
            const auto nFrame = static_cast<unsigned int>(frame.size());
            FakeNode node;
            CNetProtocolProcTWDECODERDevImp session;
            session.Start(&node, nullptr, 0);
            unsigned int nNeed = 0;
            const long nLive = allocation_fault::LiveBytes();
            const long nTaken = allocation_fault::TakenBytes();
            const long nPool = fake_host::PoolBytes(); // the host's memory
            EXPECT_EQ(
                session.OnSocketRecvData(0, frame.data(), nFrame, bBuffered ? nullptr : &nNeed, nullptr),
                nFrame);
            EXPECT_LE(allocation_fault::TakenBytes() - nTaken - (fake_host::PoolBytes() - nPool),
                      4L * nFrame);
            EXPECT_LE(allocation_fault::LiveBytes() - nLive, 2L * nFrame + 1024);
        }
    }
}
