#include "WallCommandFixture.h"

namespace {

std::string Field(const std::string& text) { return ::Field(text, 64); }

const std::string kChannels = Elem("td_channellist", Item(Elem("id", 1)));

using DeviceInfoTest = WallCommandFixture;

TEST_F(DeviceInfoTest, TheBasicConfigurationEndsWithTheNameAsLongAsItIs)
{
    for (const std::string& name : {std::string(300, 'n'), std::string()}) {
        EXPECT_EQ(Ask("GetBasicCfg", "", Elem("devicename", name) + Elem("runmode", 2)),
                  ResultOf(0x50002, Bytes().Zeros(20).U32(2).Text(name)));
    }
}

TEST_F(DeviceInfoTest, TheSystemInformationIsFollowedByTheChannels)
{
    ReplyWith(ReplyText("getsysteminfo", "%SEQ%", "0", "",
                        Elem("dataversion", "d") + Elem("kernelversion", "k") + Elem("builddate", "b") +
                            Elem("softversion", "s") + Elem("devicetype", "t") + Elem("model", -1) +
                            Elem("name", std::string(64, 'n'))));
    const std::string tail("\0tail", 5); // some decoders count a terminating zero
    ReplyWith(ReplyText("getchannelinfo", "%SEQ%", "0", "", kChannels) + tail);
    Bytes info = Bytes().Zeros(16).Text(Field(std::string(63, 'n'))).U32(-1UL);
    info.Text(Field("t") + Field("") + Field("s") + Field("b") + Field("k") + Field("d"));
    EXPECT_EQ(Run(0x50000, Option(0x5000A, "")), ResultOf(0x5000A, info)) << "other order, long text, no mac";
    EXPECT_EQ(LastBody(), Body(""));
    ASSERT_EQ(node.notifications.size(), 1U);
    const auto& notification = node.notifications[0];
    const std::string text =
        ReplyText("getchannelinfo", Element(LastRequest(), "seq"), "0", "", kChannels) + tail;
    ASSERT_EQ(node.frames.size(), 2U);
    EXPECT_EQ(Element(node.frames[0], "url") + Element(node.frames[1], "url"), "getsysteminfogetchannelinfo");
    EXPECT_EQ(std::tuple(notification.cmdID, notification.optType, notification.len, notification.data),
              std::tuple(0x50003U, 0x60000U, text.size(), text));
    EXPECT_EQ(memcmp(&notification.destination, &fake_host::Get().appNodeID, 16), 0);
}

TEST_F(DeviceInfoTest, WithoutChannelsTheHostIsNotNotified)
{
    for (const std::string& channels :
         {ReplyText("getchannelinfo", "%SEQ%", "5"),
          ReplyText("getchannelinfo", "%SEQ%", "0", "", "</not-well-formed>"), std::string("no message")}) {
        ReplyWith(ReplyText("getsysteminfo", "%SEQ%"));
        ReplyWith(channels);
        EXPECT_EQ(Run(0x50000, Option(0x5000A, "")), ResultOf(0x5000A, std::string(468, '\0'))) << channels;
    }
    EXPECT_EQ(node.frames.size(), 6U);
    EXPECT_TRUE(node.notifications.empty());
}

} // namespace
