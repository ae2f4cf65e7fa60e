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

using PlaybackTest = WallCommandFixture;

TEST_F(PlaybackTest, SendsWhatIsThereOfTheAnnouncedWindows)
{
    LogIn();
    const CommandSample& sample = CommandSampleOf("PlayBackCtrl");
    const std::string window = sample.record.substr(2); // behind the count
    const auto CheckPlayback = [this](const char* what, const std::string& record, const std::string& body) {
        Check(what, "PlayBackCtrl", record, body);
    };
    const std::string two = Bytes().U16(2).Text(window + window);
    CheckPlayback("two windows without sub-windows", Bytes().U16(2).U16(65535).U16(0).U16(4).U16(0),
                  Windows(WindowItem(65535, "") + WindowItem(4, "")));
    CheckPlayback("fewer windows than announced", Bytes().U16(3).Text(window), sample.body);
    CheckPlayback("bytes behind the windows", sample.record + "x", sample.body);
    CheckPlayback("second window cut", two.substr(0, two.size() - 1), sample.body);
    CheckPlayback("sub-window cut", sample.record.substr(0, sample.record.size() - 1), Windows(""));
    CheckPlayback("more sub-windows than bytes", Bytes().U16(1).U16(3).U16(0xFFFF), Windows(""));
    CheckPlayback("no whole count", "x", Windows(""));
    CheckPlayback("nothing", "", Windows(""));
}

TEST(PlaybackRecords, AcceptAnEndBetweenTwoWindows)
{
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
