#include <gtest/gtest.h>

#include "Link/ReplyHandOver.h"

namespace {

using Kind = CReplyHandOver::E_Kind;

class ReplyHandOverTest : public testing::Test {
protected:
    ReplyHandOverTest() { handOver.Open(); }

    void Receive(int nSeq, const std::string& text, Kind kind = Kind::Reply)
    {
        CReplyHandOver::CReceiveScope scope(handOver);
        handOver.Prepare(nSeq, kind, text);
    }
    std::string Taken()
    {
        const auto reply = handOver.Take();
        return reply ? reply->strText : "nothing";
    }

    CReplyHandOver handOver;
};

TEST_F(ReplyHandOverTest, TheFirstReplyIsTakenWhateverComesAroundIt)
{
    Receive(6, "before");
    handOver.Expect(7);
    Receive(6, "late");
    Receive(7, "notification", Kind::Notification);
    EXPECT_FALSE(handOver.HasReply(7));
    Receive(7, "reply");
    EXPECT_TRUE(handOver.HasReply(7));
    EXPECT_FALSE(handOver.HasReply(6));
    Receive(7, "again");
    Receive(7, "notification", Kind::Notification);
    Receive(8, "stranger");
    EXPECT_EQ(Taken(), "reply");
    handOver.Expect(8);
    EXPECT_FALSE(handOver.HasReply(8)) << "came before it was awaited";
}

// What the worker takes when it has seen the number, though no reply has come since it is awaited.
TEST_F(ReplyHandOverTest, AGuessedReplyIsTakenWheneverItCame)
{
    Receive(7, "guess");
    handOver.Expect(7);
    EXPECT_FALSE(handOver.HasReply(7));
    Receive(9, "stranger");
    EXPECT_EQ(Taken(), "guess");

    Receive(7, "again");
    Receive(8, "guessed during 7", Kind::Notification);
    handOver.Expect(8);
    Receive(9, "stranger");
    EXPECT_EQ(Taken(), "guessed during 7");

    Receive(10, "guessed two ahead");
    handOver.Expect(9); // fails
    handOver.ExpectNone();
    handOver.Expect(10);
    EXPECT_EQ(Taken(), "guessed two ahead");

    // The receive is under way while the worker begins to expect its number.
    {
        CReplyHandOver::CReceiveScope scope(handOver);
        handOver.Prepare(11, Kind::Reply, "crossing");
        handOver.Expect(11);
    }
    Receive(12, "stranger");
    EXPECT_EQ(Taken(), "crossing");

    handOver.Expect(13);
    Receive(13, "notification", Kind::Notification);
    EXPECT_FALSE(handOver.HasReply(13));
    EXPECT_EQ(Taken(), "notification");
}

TEST_F(ReplyHandOverTest, NothingIsKeptPastTheCommandOrWithoutOne)
{
    handOver.Expect(7);
    Receive(7, "reply");
    Receive(8, "stranger");
    {
        CReplyHandOver::CReceiveScope scope(handOver);
        handOver.Prepare(9, Kind::Reply, "crossing");
        handOver.Close();
    }
    Receive(7, "between");
    handOver.Open();
    for (const int nSeq : {7, 8, 9}) {
        handOver.Expect(nSeq);
        EXPECT_FALSE(handOver.HasReply(nSeq));
        EXPECT_EQ(Taken(), "nothing") << nSeq;
    }
    Receive(10, "left for the destructor");
}

} // namespace
