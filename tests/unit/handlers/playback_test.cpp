#include "WallCommandFixture.h"

namespace {

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

} // namespace
