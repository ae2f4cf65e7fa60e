#include <gtest/gtest.h>

#include "Link/ReplyHandOver.h"

namespace {

using Kind = CReplyHandOver::E_Kind;

class ReplyHandOverTest : public testing::Test {
protected:
    ReplyHandOverTest() { handOver.Open(); }

    void Receive(int seq, const std::string& text, Kind kind = Kind::Reply)
    {
        CReplyHandOver::CReceiveScope scope(handOver);
        handOver.Prepare(seq, kind, text);
    }
    std::string Taken()
    {
        const auto reply = handOver.Take();
        return reply ? reply->strText : "nothing";
    }

    CReplyHandOver handOver;
};

// What the worker takes when it has seen the number, though no reply has come since it is awaited: the last
// message that made it the last number, whatever has followed.
TEST_F(ReplyHandOverTest, AGuessedReplyIsTakenWhenItsNumberWasTheLast)
{
    Receive(7, "guess");
    handOver.Expect(7);
    EXPECT_FALSE(handOver.HasReply(7));
    Receive(8, "guessed during 7", Kind::Notification);
    EXPECT_EQ(Taken(), "guess");
    Receive(7, "again");
    handOver.Expect(8);
    EXPECT_EQ(Taken(), "guessed during 7");

    Receive(9, "early");
    handOver.Expect(9);
    Receive(10, "guessed two ahead");
    Receive(9, "last", Kind::Notification);
    EXPECT_FALSE(handOver.HasReply(9));
    EXPECT_EQ(Taken(), "last");
    handOver.ExpectNone();
    handOver.Expect(10);
    EXPECT_EQ(Taken(), "guessed two ahead");

    Receive(11, "early");
    Receive(12, "stranger");
    handOver.Expect(11);
    EXPECT_EQ(Taken(), "nothing");

    // The receive is under way while the worker begins to expect its number.
    {
        CReplyHandOver::CReceiveScope scope(handOver);
        handOver.Prepare(13, Kind::Reply, "crossing");
        handOver.Expect(13);
    }
    Receive(14, "stranger beside it");
    const auto reply = handOver.Take();
    EXPECT_TRUE(reply->strText == "crossing" && reply->nBeside == 18);
}

TEST_F(ReplyHandOverTest, AMessageCountsThatIsUnderWayWhenACommandBegins)
{
    handOver.Close();
    {
        CReplyHandOver::CReceiveScope scope(handOver);
        handOver.Prepare(7, Kind::Reply, "guess");
        handOver.Open();
    }
    handOver.Expect(7);
    EXPECT_EQ(Taken(), "guess");
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
    for (const int seq : {7, 8, 9}) {
        handOver.Expect(seq);
        EXPECT_FALSE(handOver.HasReply(seq));
        EXPECT_EQ(Taken(), "nothing") << seq;
    }
}

} // namespace
