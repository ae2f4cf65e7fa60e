#include "WallCommandFixture.h"

namespace {

using CanvasTest = WallCommandFixture;

TEST_F(CanvasTest, ShortRecordsSendWhatWasReadOfThem)
{
    LogIn();
    const CommandSample& create = CommandSampleOf("CreateCanvas");
    const std::string window = create.record.substr(36); // behind two GUIDs and a count
    const std::string two = Guids().U32(2).Text(window + window);
    Check("second window cut", "CreateCanvas", two.substr(0, two.size() - 1), create.body);
    Check("move cut", "ChangeCanvas", Guids().U32(1).U32(7), Windows(""));
    Check("no whole head", "DelCanvas", "short", Windows(""));
    Check("raise cut", "TopCanvas", std::string(35, 'x'), Body(Elem("td_window", Elem("id", 0))));
    Check("nothing", "doClearWall", "", Body(""));
}

} // namespace
