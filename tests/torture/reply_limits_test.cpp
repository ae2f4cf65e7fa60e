// What reading a reply may cost: the most memory that is taken while the largest one is read that is read at
// all, the answer to the host included.

#include "AllocationFault.h"
#include "CommandSamples.h"
#include "SessionFixture.h"
#include <tuple>

namespace {

constexpr long kMost = 256L << 20;

std::string InLists(std::string items, const std::vector<std::string>& lists)
{
    for (const std::string& name : lists) {
        items = Elem(name, items);
    }
    return items;
}

// Takes the answer without a copy, which would be the host's.
struct MeasuredCommand : FakeCommand {
    using FakeCommand::FakeCommand;
    void ReplyBuffer(const char*, unsigned long len) override
    {
        answerLen = len;
        liveBytes = allocation_fault::LiveBytes();
    }

    size_t answerLen = 0; // 0: a failure
    long liveBytes = 0;   // when the answer came
};

class ReplyLimitsTest : public SessionFixture {
protected:
    ReplyLimitsTest() { LogIn(); }

    // The answer's length, 0 for a failure.
    size_t Ask(const char* handler, const std::string& body)
    {
        const std::string text = ReplyText("", "%SEQ%", "0", "", body);
        const std::string tail = text.substr(text.find("%SEQ%") + 5);
        onPoll = [this, &text, &tail] {
            const std::string seq = Element(LastRequest(), "seq");
            Receive(Frame(text.substr(0, text.size() - tail.size() - 5) + seq + tail));
            allocation_fault::ResetPeak();
            m_before = allocation_fault::LiveBytes() - 2 * static_cast<long>(text.size());
        };
        const CommandSample& sample = CommandSampleOf(handler);
        MeasuredCommand command(sample.cmdID);
        Process(session, command, sample.Payload());
        m_held = command.liveBytes - m_before;
        return command.answerLen;
    }
    // The most that the plug-in took for the last reply: the buffer of received messages, the copy, and what
    // reading takes. The first two are there before, and count by the text's length.
    long Taken() const { return allocation_fault::PeakBytes() - m_before; }
    // What of it was there when the answer was given.
    long Held() const { return m_held; }

private:
    long m_before = 0;
    long m_held = 0;
};

TEST_F(ReplyLimitsTest, TheLargestRepliesStayBelowTheirBound)
{
    // The elements around the items, innermost first; the items that are read, of which 5 in 100 more are a
    // failure.
    const std::tuple<const char*, const char*, std::string, std::vector<std::string>, size_t> cases[] = {
        {"elements with a text", "GetBasicCfg", "<a>x</a>", {}, 1020000},
        {"an attribute each", "GetBasicCfg", "<a b=''/>", {}, 1150000},
        {"one long text", "GetBasicCfg", " x", {"devicename"}, 22000000},
        {"sections", "GetBasicCfg", "<![CDATA[x]]>", {}, 1700000},
        {"screens", "GetWallLayout", "<item/>", {"td_channellist"}, 260000},
        {"groups", "GetChannelGroup", "<item/>", {"channelgrouplist"}, 233000},
        {"sub-windows", "GetAudioConfig", "<item/>", {"td_subwindowlist", "item", "td_windowlist"}, 1110000},
        {"sound windows", "GetAudioConfig", "<item/>", {"td_windowlist"}, 850000},
    };
    for (const auto& [what, handler, item, lists, most] : cases) {
        SCOPED_TRACE(what);
        EXPECT_NE(Ask(handler, InLists(Repeat(item, most), lists)), 0U);
        EXPECT_LE(Taken(), kMost);
        EXPECT_GT(Taken(), kMost / 2);
        EXPECT_EQ(Ask(handler, InLists(Repeat(item, most / 20 * 21), lists)), 0U);
        EXPECT_LE(Taken(), kMost);
    }
}

TEST_F(ReplyLimitsTest, OnlyTheBufferOfMessagesHoldsALayoutWhileItIsAnswered)
{
    constexpr long kLen = 1 << 20;
    EXPECT_NE(Ask("GetWallLayout", Elem("note", std::string(kLen, 'x'))), 0U);
    EXPECT_LT(Held(), kLen + kLen / 2);
}

TEST_F(ReplyLimitsTest, ALargeReplyIsReadInTheMemoryOfTheOneBeforeAndAnyOtherFreesIt)
{
    constexpr long kNodes = 100L * 10000;
    const std::string large = Repeat("<a/>", 10000);
    for (const std::string& other : {std::string(), Repeat("<a/>", 100000)}) {
        EXPECT_NE(Ask("GetBasicCfg", other), 0U);
        const long live = allocation_fault::LiveBytes();
        EXPECT_NE(Ask("GetBasicCfg", large), 0U);
        EXPECT_GT(Taken(), kNodes);
        EXPECT_NE(Ask("GetBasicCfg", large), 0U);
        EXPECT_LT(Taken(), kNodes / 2);
        EXPECT_GT(allocation_fault::LiveBytes(), live + kNodes);
        EXPECT_NE(Ask("GetBasicCfg", other), 0U);
        EXPECT_TRUE(!other.empty() || Held() < -kNodes / 2) << "not only in the end";
        EXPECT_LT(allocation_fault::LiveBytes(), live + kNodes / 4);
    }
}

TEST_F(ReplyLimitsTest, AnotherMessageThatIsKeptCountsToo)
{
    const std::string body = Elem("devicename", std::string(44000000, 'x'));
    node.onSend = [this] { Receive(Frame(ReplyText("", "1", "0", "", std::string(4000000, 'x')))); };
    EXPECT_EQ(Ask("GetBasicCfg", body), 0U);
}

TEST_F(ReplyLimitsTest, TheLargestWallsAreRead)
{
    constexpr size_t kWindows = 4096;
    constexpr size_t kSubWindows = 64;
    constexpr size_t kScreens = 65536;
    const std::string sub = Elem("item", Elem("index", 63) + Elem("channelid", 2147483647));
    const std::string window =
        Elem("item", Elem("id", 4095) + Elem("td_subwindowlist", Repeat(sub, kSubWindows)));
    EXPECT_EQ(Ask("GetAudioConfig", Elem("td_windowlist", Repeat(window, kWindows))),
              16 + 36 + kWindows * (8 + kSubWindows * 8));
    const std::string screen = Elem("item", Elem("id", 65535) + Elem("name", std::string(300, 'n')) +
                                                Elem("coordinate", Elem("xpos", 255) + Elem("ypos", 255)));
    EXPECT_EQ(Ask("GetWallLayout", Elem("td_channellist", Repeat(screen, kScreens))), 12 + kScreens * 268);
}

} // namespace
