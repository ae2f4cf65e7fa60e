#include "WallCommandFixture.h"

namespace {

const std::string kGuids = Guids();
const std::string kTwoWindows = Guids().U32(2).U32(-3UL).U32(1).U32(0).U32(-5UL).U32(4).U32(0);

using AudioTest = WallCommandFixture;

TEST_F(AudioTest, SwitchesTheSoundOfTheWindowsThatWereRead)
{
    Check("two windows without sub-windows", "PlayAudio", Guids().U32(2).U32(4).U32(0).U32(5).U32(0),
          Windows(WindowItem(4, "") + WindowItem(5, "")));
}

TEST_F(AudioTest, TheAnswerHoldsTheHostsGuidsAndTheDecodersWindows)
{
    const auto ask = [this](const std::string& record, const std::string& body) {
        return Ask("GetAudioConfig", record, body);
    };
    const auto answer = [](const std::string& guids, unsigned long windowCount, const std::string& windows) {
        return ResultOf(0x60016, Bytes().Text(guids).U32(windowCount).Text(windows));
    };
    const std::string zero(32, '\0');
    EXPECT_EQ(ask(kTwoWindows.substr(0, kTwoWindows.size() - 1), ""), answer(kGuids, 0, ""))
        << "a bad item keeps the head";
    EXPECT_EQ(ask(kTwoWindows.substr(0, 35), ""), answer(zero, 0, ""));
    EXPECT_EQ(ask(Guids().U32(0x20000001).Zeros(8), ""), answer(zero, 0, ""));

    const std::string windows =
        Item(Elem("td_subwindowlist", Item(Elem("channelid", "-9") + Elem("index", " &#52;x")) +
                                          Elem("other", "1") + Item(Elem("td_channel", 6))) +
             Elem("id", -2)) +
        Elem("other", "1") + Item("");
    EXPECT_EQ(ask(kTwoWindows, Elem("td_windowlist", windows)),
              answer(kGuids, 2, Bytes().U32(-2UL).U32(2).U32(4).U32(-9UL).U32(0).U32(0).U32(0).U32(0)))
        << "other order, entities, unknown names, missing values";
}

} // namespace
