#include "WallCommandFixture.h"

namespace {

using PlaybackTest = WallCommandFixture;

TEST_F(PlaybackTest, SendsWhatIsThereOfTheAnnouncedWindows)
{
    const CommandSample& sample = CommandSampleOf("PlayBackCtrl");
    Check("fewer windows than announced", "PlayBackCtrl", Bytes().U16(3).Text(sample.record.substr(2)),
          sample.body);
}

} // namespace
