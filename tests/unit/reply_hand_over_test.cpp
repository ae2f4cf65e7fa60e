#include <gtest/gtest.h>

#include "ReplyHandOver.h"

namespace {

class ReplyHandOverTest : public testing::Test {
protected:
    void Receive(int nSeq, const std::string& text)
    {
        CReplyHandOver::CReceiveScope scope(handOver);
        handOver.Prepare(nSeq, text.data(), text.size());
    }
    std::string Taken()
    {
        const auto reply = handOver.Take();
        return reply ? reply->strText : "nothing";
    }

    CReplyHandOver handOver;
};

TEST_F(ReplyHandOverTest, TheExpectedMessageIsTakenWhateverComesAroundIt)
{
    Receive(6, "before");
    handOver.Expect(7);
    EXPECT_EQ(Taken(), "nothing");
    Receive(6, "late");
    Receive(7, "reply");
    Receive(8, "stranger");
    EXPECT_EQ(Taken(), "reply");
    EXPECT_EQ(Taken(), "nothing");
}

// The number may be guessed while none or another one is expected, and strangers may follow in time.
TEST_F(ReplyHandOverTest, AGuessedReplyIsTakenWheneverItCame)
{
    Receive(7, "guess");
    handOver.Expect(7);
    Receive(9, "stranger");
    EXPECT_EQ(Taken(), "guess");

    Receive(7, "again");
    Receive(8, "guessed during 7");
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
        handOver.Prepare(11, "crossing", 8);
        handOver.Expect(11);
    }
    Receive(12, "stranger");
    EXPECT_EQ(Taken(), "crossing");
    handOver.ExpectNone();
    Receive(13, "left for the destructor");
}

} // namespace
