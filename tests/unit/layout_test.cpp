#include "MonitorTvwCommLayout.h"
#include "RecordChecks.h"
#include "WallCommandFixture.h"

using namespace ORVA2_CLIENT_TVW;

namespace {

// A screen as the host holds it; the name is filled up with zeros.
std::string Screen(unsigned long id, const std::string& name, unsigned long x, unsigned long y)
{
    return Bytes().U32(id).Text(name).Zeros(256 - name.size()).U32(x).U32(y);
}

std::string Layout(unsigned long nRows, unsigned long nCols, unsigned long nCount, const std::string& screens)
{
    return Bytes().U32(nRows).U32(nCols).U32(nCount).Text(screens);
}

const std::string FULL_NAME(256, 'n');
const std::string TWO = Screen(0xFFFFFFFF, FULL_NAME, 1, 0x80000000) + Screen(8, "", 0, 2);

std::string Coordinate(const std::string& x, const std::string& y)
{
    return Elem("coordinate", Elem("xpos", x) + Elem("ypos", y));
}

class LayoutTest : public WallCommandFixture {
protected:
    std::string Ask(const std::string& body)
    {
        ReplyWith(ReplyText("getwalllayout", "%SEQ%", "0", "", body));
        const std::string answer = Run(0x50006, "not read");
        EXPECT_EQ(LastBody(), NO_BODY);
        EXPECT_EQ(Element(LastRequest(), "url"), "getwalllayout");
        return answer;
    }
};

TEST_F(LayoutTest, SetsBindsAndUnbindsWhatWasReadAndAnswersWithoutData)
{
    LogIn();
    const auto Grid = [](const std::string& nRows, const std::string& nCols) {
        return Body(Elem("row", nRows) + Elem("col", nCols));
    };
    const auto List = [](const std::string& items) { return Body(Elem("td_channellist", items)); };
    const std::string bound = Item(Elem("id", "4294967295") + Coordinate("1", "2147483648")) +
                              Item(Elem("id", 8) + Coordinate("0", "2"));
    const std::string unbound = Item(Coordinate("1", "2147483648")) + Item(Coordinate("0", "2"));
    const std::string two = Layout(3, 0xFFFFFFFF, 2, TWO);
    struct {
        const char* what;
        unsigned int nCmdID;
        std::string payload;
        const char* url;
        std::string body;
    } const cases[] = {
        {"set", 0x50005, two, "setwalllayout", Grid("3", "4294967295")},
        {"set, head alone", 0x50005, Layout(3, 4, 0, ""), "setwalllayout", Grid("3", "4")},
        {"set, no whole head", 0x50005, Layout(3, 4, 0, "").substr(0, 11), "setwalllayout", Grid("0", "0")},
        {"set, count too large", 0x50005, Layout(3, 4, 3, TWO), "setwalllayout", Grid("0", "0")},
        {"set, product beyond 32 bits", 0x50005, Layout(3, 4, 0x40000000, ""), "setwalllayout",
         Grid("0", "0")},
        {"bind", 0x50007, two, "dobindwall", List(bound)},
        {"bind, count too large", 0x50007, Layout(3, 4, 3, TWO), "dobindwall", List("")},
        {"bind, last screen cut", 0x50007, two.substr(0, two.size() - 1), "dobindwall", List("")},
        {"unbind", 0x50008, two, "dounbindwall", List(unbound)},
        {"unbind nothing", 0x50008, "", "dounbindwall", List("")},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        ReplyWith(ReplyText(c.url, "%SEQ%"));
        EXPECT_EQ(Run(c.nCmdID, c.payload), "buffer ");
        EXPECT_EQ(LastBody(), c.body);
        EXPECT_EQ(Element(LastRequest(), "url"), c.url);
    }
}

TEST_F(LayoutTest, ARefusalIsAnsweredAndSilenceIsNot)
{
    LogIn();
    for (const unsigned int nCmdID : {0x50005U, 0x50006U, 0x50007U, 0x50008U}) {
        ReplyWith(ReplyText("getwalllayout", "%SEQ%", "5"));
        EXPECT_EQ(Run(nCmdID, ""), "failure 20000002") << nCmdID;
        node.sendErrors = {1};
        EXPECT_EQ(Run(nCmdID, ""), "none") << nCmdID;
        EXPECT_EQ(nPolls, 0);
        EXPECT_EQ(Run(nCmdID, ""), "none") << nCmdID;
        EXPECT_EQ(nPolls, 300);
    }
}

TEST_F(LayoutTest, TheAnswerHoldsTheScreensAsTheyStandInTheReply)
{
    LogIn();
    const auto answer = [](const std::string& bytes) { return "buffer " + Hex(bytes); };
    EXPECT_EQ(Ask("<row>2</row><td_channellist/>"), answer(Layout(2, 0, 1, Screen(0, "", 0, 0))))
        << "an empty wall has one empty screen";

    const std::string items = Item(Elem("name", 7) + Elem("id", FULL_NAME) +
                                   Elem("any", Elem("ypos", 1) + Elem("xpos", 4294967295))) +
                              Elem("other", Elem("id", 8) + Elem("name", "a &lt;&#66;&gt;")) + Item("");
    EXPECT_EQ(Ask(Elem("td_channellist", Elem("first", Elem("id", 6)) + items) + Elem("col", 3)),
              answer(Layout(0, 3, 3,
                            Screen(7, FULL_NAME.substr(1), 1, 0xFFFFFFFF) + Screen(8, "a <B>", 0, 0) +
                                Screen(0, "", 0, 0))))
        << "children by position, siblings of any name, long name, missing values";
}

TEST_F(LayoutTest, TheReplyGoesToTheDebugLogCutToItsSize)
{
    LogIn();
    for (const size_t nPadding : {0, 5000}) {
        fake_host::Reset();
        Ask(std::string(nPadding, ' '));
        const auto log = fake_host::Logs().back();
        const std::string text =
            "the xmlDoc:\n " +
            ReplyText("getwalllayout", Element(LastRequest(), "seq"), "0", "", std::string(nPadding, ' ')) +
            "\n";
        EXPECT_EQ(log.level, fake_host::LogLevel::Debug);
        EXPECT_EQ(log.text, text.substr(0, 4095));
    }
}

TEST(LayoutRecords, KeepEveryByteAndClearAllButIdAndCount)
{
    RoundTrips<S_MTvw_Wall_Layout>(Layout(3, 4, 2, TWO), Layout(0, 0, 2, ""));
    RoundTrips<S_MTvw_Wall_Layout>(Layout(3, 4, 0, ""), Layout(0, 0, 0, ""));
    RoundTrips<S_MTvw_Wall_WallLayout_Item>(Screen(5, FULL_NAME, 6, 7), Screen(5, "", 0, 0));
}

} // namespace
