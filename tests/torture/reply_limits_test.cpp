// What reading a reply may cost: the most memory that is taken while the largest one is read that is read at
// all, the answer to the host included.

#include "AllocationFault.h"
#include "SessionFixture.h"
#include <tuple>

namespace {

constexpr unsigned int GET = 0x50000;
constexpr unsigned int GET_LAYOUT = 0x50006;
constexpr unsigned int BASIC_CONFIG = 0x50002;
constexpr unsigned int GROUPS = 0x6000D;
constexpr unsigned int SOUND = 0x60016;
constexpr long MOST = 256L << 20;

struct Question {
    unsigned int nCmdID;
    unsigned int nOptType; // 0 for none
};

std::string InLists(std::string items, const std::vector<std::string>& lists)
{
    for (const std::string& name : lists) {
        items = Elem(name, items);
    }
    return items;
}

// Takes the answer without a copy, which would be the host's.
class MeasuredCommand final : public CCmdProcObject {
public:
    explicit MeasuredCommand(unsigned int nCmdID) : m_nCmdID(nCmdID) {}

    unsigned int GetRequestCommand() const override { return m_nCmdID; }
    bool HasReply() const override { return true; }
    void AddReference(int) override {}
    void DecReference(int) override {}
    void ReplyRecord(const ORVA_NET_PROTOCOL::_kest_net_reply&) override {}
    void ReplyBuffer(const char*, unsigned long nLen) override { nAnswerLen = nLen; }

    size_t nAnswerLen = 0; // 0: a failure

private:
    unsigned int m_nCmdID;
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
            m_nBefore = allocation_fault::LiveBytes() - 2 * static_cast<long>(text.size());
        };
        MeasuredCommand command(question.nCmdID);
        Process(session, command, question.nOptType == 0 ? "" : Option(question.nOptType, ""));
        return command.nAnswerLen;
    }
    // The most that the plug-in took for the last reply: the buffer of received messages, the copy, and what
    // reading takes. The first two are there before, and count by the text's length.
    long Taken() const { return allocation_fault::PeakBytes() - m_nBefore; }

private:
    long m_nBefore = 0;
};

TEST_F(ReplyLimitsTest, TheLargestRepliesStayBelowTheirBound)
{
    // The elements around the items, innermost first; the items that are read, of which 5 in 100 more are a
    // failure.
    const std::tuple<const char*, Question, std::string, std::vector<std::string>, size_t> cases[] = {
        {"elements with a text", {GET, BASIC_CONFIG}, "<a>x</a>", {}, 1020000},
        {"an attribute each", {GET, BASIC_CONFIG}, "<a b=''/>", {}, 1150000},
        {"one long text", {GET, BASIC_CONFIG}, "x", {"devicename"}, 44000000},
        {"screens", {GET_LAYOUT, 0}, "<item/>", {"td_channellist"}, 260000},
        {"groups", {GET, GROUPS}, "<item/>", {"channelgrouplist"}, 233000},
        {"sub-windows", {GET, SOUND}, "<item/>", {"td_subwindowlist", "item", "td_windowlist"}, 1110000},
    };
    for (const auto& [what, question, item, lists, nMost] : cases) {
        SCOPED_TRACE(what);
        EXPECT_NE(Ask(question, InLists(Repeat(item, nMost), lists)), 0U);
        EXPECT_LE(Taken(), MOST);
        EXPECT_GT(Taken(), MOST / 2);
        EXPECT_EQ(Ask(question, InLists(Repeat(item, nMost / 20 * 21), lists)), 0U);
        EXPECT_LE(Taken(), MOST);
    }
}

TEST_F(ReplyLimitsTest, WhatFollowsAZeroByteIsReceivedButNotParsed)
{
    const std::string name = Elem("devicename", "n");
    EXPECT_NE(Ask({GET, BASIC_CONFIG}, name, std::string(133000000, '\0')), 0U);
    EXPECT_LE(Taken(), MOST);
    EXPECT_EQ(Ask({GET, BASIC_CONFIG}, name, std::string(133200000, '\0')), 0U);
}

TEST_F(ReplyLimitsTest, TheLargestWallsAreRead)
{
    constexpr size_t WINDOWS = 4096;
    constexpr size_t SUB_WINDOWS = 64;
    constexpr size_t SCREENS = 65536;
    const std::string sub = Elem("item", Elem("index", 63) + Elem("channelid", 2147483647));
    const std::string window =
        Elem("item", Elem("id", 4095) + Elem("td_subwindowlist", Repeat(sub, SUB_WINDOWS)));
    EXPECT_EQ(Ask({GET, SOUND}, Elem("td_windowlist", Repeat(window, WINDOWS))),
              16 + 36 + WINDOWS * (8 + SUB_WINDOWS * 8));
    const std::string screen = Elem("item", Elem("id", 65535) + Elem("name", std::string(300, 'n')) +
                                                Elem("coordinate", Elem("xpos", 255) + Elem("ypos", 255)));
    EXPECT_EQ(Ask({GET_LAYOUT, 0}, Elem("td_channellist", Repeat(screen, SCREENS))), 12 + SCREENS * 268);
}

} // namespace
