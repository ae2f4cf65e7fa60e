#include "DecodeCommPlayback.h"
#include "RecordChecks.h"
#include "WallCommandFixture.h"

using namespace ORVA2_DECODER_TVW;

namespace {

std::string Window(unsigned int id, unsigned int nSubWindows)
{
    Bytes window = Bytes().U16(id).U16(nSubWindows);
    for (unsigned int i = 0; i < nSubWindows; ++i) {
        window.U16(i).U16(7).U16(0xFFFF - i);
    }
    return window;
}

std::string SubItem(const std::string& index, const std::string& value)
{
    return Item(Elem("index", index) + Elem("pbctrltype", 7) + Elem("pbctrlval", value));
}

const std::string ITEM_3 =
    Item(Elem("id", 3) + Elem("td_subwindowlist", SubItem("0", "65535") + SubItem("1", "65534")));

using PlaybackTest = WallCommandFixture;

TEST_F(PlaybackTest, SendsWhatIsThereOfTheAnnouncedWindows)
{
    LogIn();
    const auto windows = [](const std::string& items) { return Body(Elem("td_windowlist", items)); };
    const std::string items = ITEM_3 + Item(Elem("id", 65535) + Elem("td_subwindowlist", ""));
    const std::string two = Bytes().U16(2).Text(Window(3, 2)).Text(Window(0xFFFF, 0));
    const std::pair<std::string, std::string> cases[] = {
        {two, items},
        {Bytes().U16(3).Text(Window(3, 2)), ITEM_3}, // fewer windows than announced
        {two.substr(0, two.size() - 1), ITEM_3},     // second window cut
        {Bytes().U16(2).Text(Window(3, 2)).Text(Window(4, 1) + "x"),
         items.substr(0, ITEM_3.size()) +
             Item(Elem("id", 4) + Elem("td_subwindowlist", SubItem("0", "65535")))},
        {Bytes().U16(1).Text(Window(3, 2).substr(0, 15)), ""}, // sub-window cut
        {Bytes().U16(1).U16(3).U16(0xFFFF), ""},               // more sub-windows than bytes
        {"x", ""},
        {"", ""},
    };
    for (const auto& [record, sent] : cases) {
        Check({"playback", 0x50002, 0x5001D, record, "doplaybackcontrol", windows(sent), 0x5001D});
    }
    CheckFailures(0x50002, 0x5001D);
}

TEST(PlaybackRecords, KeepEveryByteAndAcceptAnEndBetweenTwoWindows)
{
    RoundTrips<S_Playback_Ctrl_Cavs>(Window(3, 2));
    const std::string two = Bytes().U16(2).Text(Window(3, 1)).Text(Window(4, 2));
    for (size_t n = 0; n <= two.size(); ++n) {
        S_Playback_Ctrl_Items_V2 record;
        EXPECT_EQ(Decode(record, two.substr(0, n)), n == 2 || n == 12 || n == two.size()) << n;
        EXPECT_EQ(record._nCavs.size(), n == two.size() ? 2u : n >= 12 ? 1u : 0u) << n;
    }
    S_Playback_Ctrl_Items_V2 record;
    ASSERT_TRUE(Decode(record, two + "more"));
    EXPECT_EQ(Encode(record), two);
}

} // namespace
