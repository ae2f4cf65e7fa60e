#include "MonitorTvwCommChannelGroup.h"
#include "RecordChecks.h"
#include "WallCommandFixture.h"

using namespace ORVA2_CLIENT_TVW;

namespace {

const std::string WALL(16, 'W');

// A group as the host holds it; the texts are filled up with zeros.
std::string Group(const std::string& guid, unsigned long id, unsigned long nChannels, unsigned long nInterval,
                  const std::string& name, const std::string& channels)
{
    Bytes group = Bytes().Text(guid).U32(id).U32(nChannels).U32(nInterval);
    return group.Text(Field(name, 256)).Text(Field(channels, 16));
}

std::string GroupElement(const std::string& id, const std::string& name, const std::string& nChannels,
                         const std::string& nInterval, const std::string& channels)
{
    return Elem("channelgroup", Elem("id", id) + Elem("name", name) + Elem("channelnum", nChannels) +
                                    Elem("interval", nInterval) + Elem("td_channellist", channels));
}

using ChannelGroupTest = WallCommandFixture;

constexpr auto URL = "setchannelgroup"; // that which sets a group

TEST_F(ChannelGroupTest, EveryRequestSendsItsBodyAndEchoesItsRecord)
{
    LogIn();
    const std::string full = Group(WALL, -7UL, 0xFFFFFFFF, 0x80000000, std::string(256, 'n'), "1,2,3 & <4>");
    const std::string fullBody =
        Body(GroupElement("-7", std::string(256, 'n'), "4294967295", "2147483648", "1,2,3 &amp; &lt;4&gt;"));
    const std::string zeroBody = Body(GroupElement("0", "", "0", "0", ""));
    const std::string polling =
        Bytes().Text(WALL).U32(2).U32(-1UL).U32(2).U32(0).U32(8).U32(0xFFFFFFFF).U32(9).U32(5).U32(0);
    const std::string polled1 =
        Item(Elem("id", -1) +
             Elem("td_subwindowlist", Item(Elem("index", 0) + Elem("channelgroup", 8)) +
                                          Item(Elem("index", 4294967295) + Elem("channelgroup", 9))));
    const std::string polled2 = Item(Elem("id", 5) + Elem("td_subwindowlist", ""));
    const Case cases[] = {
        {"add", 0x50002, 0x6000A, full, "doaddchannelgroup", fullBody, 0x6000A},
        {"set, answered as a start of polling", 0x50001, 0x6000C, full, "setchannelgroup", fullBody, 0x6000E},
        {"add cut", 0x50002, 0x6000A, full.substr(0, 299), "doaddchannelgroup", zeroBody, 0x6000A},
        {"delete", 0x50002, 0x6000B, Bytes().Text(WALL).U32(2).U32(-7UL).U32(8), "dodeletechannelgroup",
         Body(Elem("channelgrouplist", Item(Elem("id", -7)) + Item(Elem("id", 8)))), 0x6000B},
        {"delete none", 0x50002, 0x6000B, Bytes().Text(WALL).U32(0), "dodeletechannelgroup",
         Body(Elem("channelgrouplist", "")), 0x6000B},
        {"delete more than there are bytes", 0x50002, 0x6000B, Bytes().Text(WALL).U32(0x40000001).U32(8),
         "dodeletechannelgroup", Body(Elem("channelgrouplist", "")), 0x6000B},
        {"start", 0x50002, 0x6000E, polling, "dostartchlgrouppolling",
         Body(Elem("td_windowlist", polled1 + polled2)), 0x6000E},
        {"start cut", 0x50002, 0x6000E, polling.substr(0, polling.size() - 1), "dostartchlgrouppolling",
         Body(Elem("td_windowlist", polled1)), 0x6000E},
        {"start nothing", 0x50002, 0x6000E, "", "dostartchlgrouppolling", Body(Elem("td_windowlist", "")),
         0x6000E},
    };
    for (const auto& c : cases) {
        Check(c);
    }
    for (const unsigned int nOptType : {0x6000AU, 0x6000BU, 0x6000EU}) {
        CheckFailures(0x50002, nOptType);
    }
    CheckFailures(0x50001, 0x6000C);
    CheckFailures(0x50000, 0x6000D);
}

TEST_F(ChannelGroupTest, AsksForOneGroupOrAllUnderTheUrlThatSetsOne)
{
    LogIn();
    const std::string one = Body(Elem("channelgroup", Elem("id", -2)));
    const std::pair<std::string, std::string> cases[] = {
        {Bytes().Text(WALL).U32(-2UL), one},
        {Bytes().Text(WALL).U32(0), Body("")},
        {WALL, Body("")},
        {WALL + "\1\1\1", Body("")},
        {"", Body("")},
    };
    for (const auto& [record, body] : cases) {
        EXPECT_EQ(Ask(0x50000, Option(0x6000D, record), URL), ResultOf(0x6000E, Bytes().U32(0)));
        EXPECT_EQ(LastBody(), body);
    }
    S_MTvw_Wall_Get_ChGroup record;
    Decode(record, WALL);
    EXPECT_EQ(Encode(record), WALL + std::string(4, '\0')) << "the wall stands without the id";
    EXPECT_FALSE(record.SetData(nullptr, 0));
    EXPECT_EQ(Encode(record), std::string(20, '\0')) << "emptied even without data";
}

TEST_F(ChannelGroupTest, TheAnswerHoldsTheDecodersGroups)
{
    LogIn();
    const std::string items =
        Item(Elem("td_channellist", std::string(16, 'c')) + Elem("name", std::string(256, 'n')) +
             Elem("interval", 4294967295) + Elem("id", -3) + Elem("channelnum", 9)) +
        Elem("other", "1") +
        Item(Elem("name", "\xE5\x8C\x97 &lt;&#65;&gt;") + Elem("td_channellist", "1;2")) + Item("");
    const std::string zero(16, '\0');
    EXPECT_EQ(Ask(0x50000, Option(0x6000D, WALL), URL, Elem("channelgrouplist", items)),
              ResultOf(0x6000E, Bytes()
                                    .U32(3)
                                    .Text(Group(zero, -3UL, 0, 0xFFFFFFFF, std::string(255, 'n'),
                                                std::string(15, 'c')))
                                    .Text(Group(zero, 0, 0, 0, "\xE5\x8C\x97 <A>", "1;2"))
                                    .Text(Group(zero, 0, 0, 0, "", ""))))
        << "other order, long texts, UTF-8, entities, unknown names, missing values";
}

TEST(ChannelGroupRecords, KeepEveryByteAndRefuseEveryShorterPayload)
{
    RoundTrips<S_MTvw_Wall_Channel_Group_Info>(Group(WALL, 1, 2, 3, std::string(256, 'n'), "1,2"));
    RoundTrips<S_MTvw_Wall_Delete_Channel_Group>(Bytes().Text(WALL).U32(2).U32(7).U32(8));
    RoundTrips<S_MTvw_Wall_Start_Chl_GrPolling>(
        Bytes().Text(WALL).U32(2).U32(1).U32(1).U32(2).U32(3).U32(4).U32(0));
    RoundTrips<S_MTvw_Wall_Get_ChGroup>(Bytes().Text(WALL).U32(7));
    RoundTrips<S_MTvw_Wall_Get_ChGroup_info>(Bytes().U32(1).Text(Group(WALL, 1, 2, 3, "name", "1")));
    for (const unsigned long count : {3UL, 0x20000001UL, 0xFFFFFFFFUL}) { // some wrap around in 32 bits
        S_MTvw_Wall_Start_Chl_GrPolling polling;
        EXPECT_FALSE(Decode(polling, Bytes().Text(WALL).U32(count).Zeros(16)));
        EXPECT_TRUE(polling._GrPollinglist.empty());
    }
}

} // namespace
