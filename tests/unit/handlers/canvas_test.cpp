#include "WallCommandFixture.h"

namespace {

using CanvasTest = WallCommandFixture;

TEST_F(CanvasTest, ShortRecordsSendWhatWasReadOfThem)
{
    Check("move cut", "ChangeCanvas", Guids().U32(1).U32(7), Windows(""));
}

} // namespace
