// What reading a reply may cost: the most memory that is taken while the largest one is read that is read at
// all, the answer to the host included.

#include "AllocationFault.h"
#include "SessionFixture.h"
#include <tuple>

namespace {

constexpr unsigned int kGet = 0x50000;
constexpr unsigned int kGetLayout = 0x50006;
constexpr unsigned int kBasicConfig = 0x50002;
constexpr unsigned int kGroups = 0x6000D;
constexpr unsigned int kSound = 0x60016;
constexpr long kMost = 256L << 20;

struct Question {
    unsigned int cmdID;
    unsigned int optType; // 0 for none
};

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
    void ReplyBuffer(const char*, unsigned long len) override { answerLen = len; }

    size_t answerLen = 0; // 0: a failure
};

class ReplyLimitsTest : public SessionFixture {
protected:
    ReplyLimitsTest() { LogIn(); }

    // The answer's length, 0 for a failure.
    size_t Ask(const Question& question, const std::string& body, const std::string& behind = "")
    {
        const std::string text = ReplyText("", "%SEQ%", "0", "", body) + behind;
        const std::string tail = text.substr(text.find("%SEQ%") + 5);
        onPoll = [this, &text, &tail] {
            const std::string seq = Element(LastRequest(), "seq");
            Receive(Frame(text.substr(0, text.size() - tail.size() - 5) + seq + tail));
            allocation_fault::ResetPeak();
            m_before = allocation_fault::LiveBytes() - 2 * static_cast<long>(text.size());
        };
        MeasuredCommand command(question.cmdID);
        Process(session, command, question.optType == 0 ? "" : Option(question.optType, ""));
        return command.answerLen;
    }
    // The most that the plug-in took for the last reply: the buffer of received messages, the copy, and what
    // reading takes. The first two are there before, and count by the text's length.
    long Taken() const { return allocation_fault::PeakBytes() - m_before; }

private:
    long m_before = 0;
};

TEST_F(ReplyLimitsTest, TheLargestRepliesStayBelowTheirBound)
{
    // The elements around the items, innermost first; the items that are read, of which 5 in 100 more are a
    // failure.
    const std::tuple<const char*, Question, std::string, std::vector<std::string>, size_t> cases[] = {
        {"elements with a text", {kGet, kBasicConfig}, "<a>x</a>", {}, 1020000},
        {"an attribute each", {kGet, kBasicConfig}, "<a b=''/>", {}, 1150000},
        {"one long text", {kGet, kBasicConfig}, "x", {"devicename"}, 44000000},
        {"screens", {kGetLayout, 0}, "<item/>", {"td_channellist"}, 260000},
        {"groups", {kGet, kGroups}, "<item/>", {"channelgrouplist"}, 233000},
        {"sub-windows", {kGet, kSound}, "<item/>", {"td_subwindowlist", "item", "td_windowlist"}, 1110000},
    };
    for (const auto& [what, question, item, lists, most] : cases) {
        SCOPED_TRACE(what);
        EXPECT_NE(Ask(question, InLists(Repeat(item, most), lists)), 0U);
        EXPECT_LE(Taken(), kMost);
        EXPECT_GT(Taken(), kMost / 2);
        EXPECT_EQ(Ask(question, InLists(Repeat(item, most / 20 * 21), lists)), 0U);
        EXPECT_LE(Taken(), kMost);
    }
}

TEST_F(ReplyLimitsTest, WhatFollowsAZeroByteIsReceivedButNotParsed)
{
    const std::string name = Elem("devicename", "n");
    EXPECT_NE(Ask({kGet, kBasicConfig}, name, std::string(133000000, '\0')), 0U);
    EXPECT_LE(Taken(), kMost);
    EXPECT_EQ(Ask({kGet, kBasicConfig}, name, std::string(133200000, '\0')), 0U);
}

TEST_F(ReplyLimitsTest, TheLargestWallsAreRead)
{
    constexpr size_t kWindows = 4096;
    constexpr size_t kSubWindows = 64;
    constexpr size_t kScreens = 65536;
    const std::string sub = Elem("item", Elem("index", 63) + Elem("channelid", 2147483647));
    const std::string window =
        Elem("item", Elem("id", 4095) + Elem("td_subwindowlist", Repeat(sub, kSubWindows)));
    EXPECT_EQ(Ask({kGet, kSound}, Elem("td_windowlist", Repeat(window, kWindows))),
              16 + 36 + kWindows * (8 + kSubWindows * 8));
    const std::string screen = Elem("item", Elem("id", 65535) + Elem("name", std::string(300, 'n')) +
                                                Elem("coordinate", Elem("xpos", 255) + Elem("ypos", 255)));
    EXPECT_EQ(Ask({kGetLayout, 0}, Elem("td_channellist", Repeat(screen, kScreens))), 12 + kScreens * 268);
}

} // namespace
