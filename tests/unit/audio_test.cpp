#include "MonitorTvwCommAudio.h"
#include "RecordChecks.h"
#include "WallCommandFixture.h"

using namespace ORVA2_CLIENT_TVW;

namespace {

const std::string GUIDS = std::string(16, 'W') + std::string(16, 'D');

std::string Window(unsigned long id, unsigned long nSubWindows)
{
    Bytes window = Bytes().U32(id).U32(nSubWindows);
    for (unsigned long i = 0; i < nSubWindows; ++i) {
        window.U32(i).U32(-5UL);
    }
    return window;
}

const std::string TWO = Bytes().Text(GUIDS).U32(2).Text(Window(-3UL, 1)).Text(Window(4, 0));

std::string Windows(const std::string& items) { return Body(Elem("td_windowlist", items)); }
std::string Window(int id, const std::string& subItems)
{
    return Item(Elem("id", id) + Elem("td_subwindowlist", subItems));
}

using AudioTest = WallCommandFixture;

TEST_F(AudioTest, SwitchesTheSoundOfTheWindowsThatWereRead)
{
    LogIn();
    const std::string on = Item(Elem("index", 0) + Elem("td_channel", -5));
    const std::string off = Item(Elem("index", 0));
    const std::string cut = TWO.substr(0, TWO.size() - 1);
    const Case cases[] = {
        {"on", 0x50002, 0x60014, TWO, "doopensound", Windows(Window(-3, on) + Window(4, "")), 0x60014},
        {"off, without channels", 0x50002, 0x60015, TWO, "doclosesound",
         Windows(Window(-3, off) + Window(4, "")), 0x60015},
        {"second window cut", 0x50002, 0x60014, cut, "doopensound", Windows(Window(-3, on)), 0x60014},
        {"no windows", 0x50002, 0x60014, Bytes().Text(GUIDS).U32(0), "doopensound", Windows(""), 0x60014},
        {"nothing", 0x50002, 0x60015, "", "doclosesound", Windows(""), 0x60015},
    };
    for (const auto& c : cases) {
        Check(c);
    }
    CheckFailures(0x50002, 0x60014);
    CheckFailures(0x50002, 0x60015);
    CheckFailures(0x50000, 0x60016);
}

TEST_F(AudioTest, TheAnswerHoldsTheHostsGuidsAndTheDecodersWindows)
{
    LogIn();
    const auto ask = [this](const std::string& record, const std::string& body) {
        return Ask(0x50000, Option(0x60016, record), "getaudioconfig", body);
    };
    const auto answer = [](const std::string& guids, unsigned long nWindows, const std::string& windows) {
        return ResultOf(0x60016, Bytes().Text(guids).U32(nWindows).Text(windows));
    };
    const std::string zero(32, '\0');
    EXPECT_EQ(ask(TWO, ""), answer(GUIDS, 0, ""));
    EXPECT_EQ(LastBody(), Body(""));
    EXPECT_EQ(ask(TWO.substr(0, TWO.size() - 1), ""), answer(GUIDS, 0, "")) << "a bad item keeps the head";
    EXPECT_EQ(ask(TWO.substr(0, 35), ""), answer(zero, 0, ""));
    EXPECT_EQ(ask(Bytes().Text(GUIDS).U32(0x20000001).Zeros(8), ""), answer(zero, 0, ""));

    const std::string windows =
        Item(Elem("td_subwindowlist", Item(Elem("channelid", "-9") + Elem("index", " &#52;x")) +
                                          Elem("other", "1") + Item(Elem("td_channel", 6))) +
             Elem("id", -2)) +
        Elem("other", "1") + Item("");
    EXPECT_EQ(ask(TWO, Elem("td_windowlist", windows)),
              answer(GUIDS, 2, Bytes().U32(-2UL).U32(2).U32(4).U32(-9UL).U32(0).U32(0).U32(0).U32(0)))
        << "other order, entities, unknown names, missing values";
}

TEST(AudioRecords, KeepEveryByteAndDropTheHeadWithACountThatCannotBe)
{
    RoundTrips<S_MTvw_Get_Audio_Config>(TWO);
    RoundTrips<S_MTvw_Get_Audio_Config>(TWO.substr(0, 32) + std::string(4, '\0'));
    for (const unsigned long count : {3UL, 0x20000000UL, 0xFFFFFFFFUL}) { // some wrap around in 32 bits
        S_MTvw_Get_Audio_Config record;
        EXPECT_FALSE(Decode(record, Bytes().Text(GUIDS).U32(count).Zeros(16)));
        EXPECT_EQ(Encode(record), std::string(36, '\0'));
        EXPECT_FALSE(Decode(record, Bytes().Text(GUIDS).U32(1).U32(7).U32(count).Zeros(8)));
        EXPECT_EQ(Encode(record), std::string(Bytes().Text(GUIDS).U32(1)));
    }
}

} // namespace
