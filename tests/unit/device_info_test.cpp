#include "WallCommandFixture.h"

namespace {

std::string Field(const std::string& text) { return Bytes().Text(text).Zeros(64 - text.size()); }

const std::string CHANNELS = Elem("td_channellist", Item(Elem("id", 1)));

class DeviceInfoTest : public WallCommandFixture {
protected:
    std::string Ask(unsigned int nOptType, const std::string& url, const std::string& body)
    {
        ReplyWith(ReplyText(url, "%SEQ%", "0", "", body));
        node.frames.clear();
        return Run(0x50000, Option(nOptType, "not read"));
    }
    std::string SentUrls() const
    {
        std::string urls;
        for (const auto& frame : node.frames) {
            urls += Element(frame, "url") + " ";
        }
        return urls;
    }
};

TEST_F(DeviceInfoTest, TheBasicConfigurationEndsWithTheNameAsLongAsItIs)
{
    LogIn();
    const std::string name(300, 'n');
    EXPECT_EQ(Ask(0x50002, "getbasicconfig",
                  Elem("devicename", name) + Elem("runmode", 2) + Elem("identidy", 4294967295)),
              ResultOf(0x50002, Bytes().Zeros(16).U32(0xFFFFFFFF).U32(2).Text(name)));
    EXPECT_EQ(LastBody(), NO_BODY);
    EXPECT_EQ(SentUrls(), "getbasicconfig ");
    EXPECT_EQ(Ask(0x50002, "getbasicconfig", Elem("devicename", "")),
              ResultOf(0x50002, std::string(24, '\0')));
    CheckFailures(0x50000, 0x50002);
}

TEST_F(DeviceInfoTest, TheSystemInformationIsFollowedByTheChannels)
{
    LogIn();
    ReplyWith(ReplyText("getsysteminfo", "%SEQ%", "0", "",
                        Elem("dataversion", "d") + Elem("kernelversion", "k") + Elem("builddate", "b") +
                            Elem("softversion", "s") + Elem("devicetype", "t") + Elem("model", -1) +
                            Elem("name", std::string(64, 'n'))));
    ReplyWith(ReplyText("getchannelinfo", "%SEQ%", "0", "", CHANNELS));
    EXPECT_EQ(Run(0x50000, Option(0x5000A, "not read")),
              ResultOf(0x5000A, Bytes()
                                    .Zeros(16)
                                    .Text(Field(std::string(63, 'n')))
                                    .U32(-1UL)
                                    .Text(Field("t") + Field("") + Field("s"))
                                    .Text(Field("b") + Field("k") + Field("d"))))
        << "other order, long text, no mac";
    EXPECT_EQ(SentUrls(), "getsysteminfo getchannelinfo ");
    EXPECT_EQ(LastBody(), Body(""));

    ASSERT_EQ(node.notifications.size(), 1U);
    const auto& notification = node.notifications[0];
    const std::string text = ReplyText("getchannelinfo", Element(LastRequest(), "seq"), "0", "", CHANNELS);
    EXPECT_EQ(notification.nCmdID, 0x50003U);
    EXPECT_EQ(notification.nOptType, 0x60000U);
    EXPECT_EQ(notification.data, text);
    EXPECT_EQ(notification.nLen, text.size());
    EXPECT_EQ(memcmp(&notification.destination, &fake_host::Get().appNodeID, 16), 0);
}

TEST_F(DeviceInfoTest, WithoutSystemInformationOrChannelsTheHostIsNotNotified)
{
    LogIn();
    CheckFailures(0x50000, 0x5000A);
    EXPECT_EQ(SentUrls(), "getsysteminfo ") << "no channels after a failure";

    const std::string replies[] = {ReplyText("getchannelinfo", "%SEQ%", "5"),
                                   ReplyText("getchannelinfo", "%SEQ%", "0", "", "</not-well-formed>"), ""};
    for (const std::string& reply : replies) {
        ReplyWith(ReplyText("getsysteminfo", "%SEQ%"));
        if (!reply.empty()) {
            ReplyWith(reply);
        }
        node.frames.clear();
        EXPECT_EQ(Run(0x50000, Option(0x5000A, "")), ResultOf(0x5000A, std::string(468, '\0'))) << reply;
        EXPECT_EQ(SentUrls(), "getsysteminfo getchannelinfo ");
    }
    EXPECT_TRUE(node.notifications.empty());
}

} // namespace
