#include "WallCommandFixture.h"

namespace {

std::string Layout(unsigned long rows, unsigned long cols, unsigned long count, const std::string& screens)
{
    return Bytes().U32(rows).U32(cols).U32(count).Text(screens);
}

const std::string kFullName(256, 'n');
const std::string kTwoScreens =
    ScreenRecord(0xFFFFFFFF, kFullName, 1, 0x80000000) + ScreenRecord(8, "", 0, 2);

using LayoutTest = WallCommandFixture;

TEST_F(LayoutTest, ShortRecordsSendWhatWasReadOfThem)
{
    const std::string wraps = Layout(3, 4, 0x40000000, ""); // 0 bytes in 32 bits
    Check("short layout", "SetWallLayout", wraps, Body(Elem("row", 0) + Elem("col", 0)));
    Check("short list", "BindWall", Layout(3, 4, 3, kTwoScreens), Body(Elem("td_channellist", "")));
}

TEST_F(LayoutTest, TheAnswerHoldsTheScreensAsTheyStandInTheReply)
{
    const auto get = [this](const std::string& body) { return Ask("GetWallLayout", "", body); };
    const auto answer = [](const std::string& bytes) { return "buffer " + Hex(bytes); };
    EXPECT_EQ(get("<row>2</row><td_channellist/>"), answer(Layout(2, 0, 1, ScreenRecord(0, "", 0, 0))))
        << "one empty screen";
    const std::string seq = Element(LastRequest(), "seq");
    EXPECT_EQ(fake_host::Logs().back().text,
              "the xmlDoc:\n " +
                  ReplyText("getwalllayout", seq, "0", "<session>SID</session><token>TOK</token>",
                            "<row>2</row><td_channellist/>") +
                  "\n");
    EXPECT_EQ(fake_host::CountLogs(fake_host::LogLevel::Debug, fake_host::kProtocolSource, 0), 1);
    get(std::string(5000, ' '));
    EXPECT_EQ(fake_host::Logs().back().text.size(), 4095U);

    const std::string items = Item(Elem("name", 7) + Elem("id", kFullName) +
                                   Elem("any", Elem("ypos", 1) + Elem("xpos", 4294967295))) +
                              Elem("other", Elem("id", 8) + Elem("name", "a &lt;&#66;&gt;")) + Item("");
    EXPECT_EQ(get(Elem("td_channellist", Elem("first", Elem("id", 6)) + items) + Elem("col", 3)),
              answer(Layout(0, 3, 3,
                            ScreenRecord(7, kFullName.substr(1), 1, 0xFFFFFFFF) +
                                ScreenRecord(8, "a <B>", 0, 0) + ScreenRecord(0, "", 0, 0))))
        << "children by position, siblings of any name, long name, missing values";
}

} // namespace
