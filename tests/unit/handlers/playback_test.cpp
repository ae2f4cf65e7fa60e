#include "WallCommandFixture.h"

namespace {

using PlaybackTest = WallCommandFixture;

TEST_F(PlaybackTest, SendsWhatIsThereOfTheAnnouncedWindows)
{
    const CommandSample& sample = CommandSampleOf("PlayBackCtrl");
    Check("two windows without sub-windows", "PlayBackCtrl", Bytes().U16(2).U16(65535).U16(0).U16(4).U16(0),
          Windows(WindowItem(65535, "") + WindowItem(4, "")));
    Check("fewer windows than announced", "PlayBackCtrl", Bytes().U16(3).Text(sample.record.substr(2)),
          sample.body);
}

} // namespace
