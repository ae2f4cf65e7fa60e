#include "WallCommandFixture.h"

namespace {

const std::string kWall(16, 'W');

using ChannelGroupTest = WallCommandFixture;

TEST_F(ChannelGroupTest, ShortRecordsSendWhatWasReadOfThem)
{
    const std::string group = CommandSampleOf("AddChannelGroup").record;
    Check("add cut", "AddChannelGroup", group.substr(0, group.size() - 1),
          Body(Elem("channelgroup", Elem("id", 0) + Elem("name", "") + Elem("channelnum", 0) +
                                        Elem("interval", 0) + Elem("td_channellist", ""))));
}

TEST_F(ChannelGroupTest, AsksForAllGroupsWhereNoneIsNamed)
{
    for (const std::string& bytes : {kWall + std::string(4, '\0'), kWall, kWall + "\1\1\1", std::string()}) {
        EXPECT_EQ(Ask("GetChannelGroup", bytes, ""), ResultOf(0x6000E, Bytes().U32(0)));
        EXPECT_EQ(SentBody(), Body(""));
    }
}

TEST_F(ChannelGroupTest, TheAnswerHoldsTheDecodersGroups)
{
    const auto texts = [](const std::string& name, const std::string& channels) {
        return Item(Elem("name", name) + Elem("td_channellist", channels));
    };
    const std::string items =
        Item(Elem("td_channellist", std::string(16, 'c')) + Elem("name", std::string(256, 'n')) +
             Elem("interval", 4294967295) + Elem("id", -3) + Elem("channelnum", 9)) +
        texts(std::string(256, 'n'), "1") + texts(std::string(259, 'n'), "") +
        texts(std::string(300, 'n'), "1;2") + texts(std::string(300, 'n'), std::string(15, 'c')) +
        texts("", std::string(300, 'c')) + Elem("other", "1") +
        Item(Elem("name", "\xE5\x8C\x97 &lt;&#65;&gt;") + Elem("td_channellist", "1;2")) + Item("");
    const auto group = [name = std::string(256, 'n')](const std::string& channels) {
        return GroupRecord(kNoGuid, 0, 0, 0, name, channels);
    };
    const std::string full(16, 'c');
    const std::string groups =
        GroupRecord(kNoGuid, -3UL, 0, 0xFFFFFFFF, std::string(256, 'n'), full) + group("1") +
        group({"\0nn", 3}) + group("1;2" + ('\0' + std::string(12, 'n'))) + group(std::string(15, 'c')) +
        GroupRecord(kNoGuid, 0, 0, 0, "", full) + GroupRecord(kNoGuid, 0, 0, 0, "\xE5\x8C\x97 <A>", "1;2") +
        GroupRecord(kNoGuid, 0, 0, 0, "", "");
    EXPECT_EQ(Ask("GetChannelGroup", kWall, Elem("channelgrouplist", items)),
              ResultOf(0x6000E, Bytes().U32(8).Text(groups)))
        << "other order, long texts, UTF-8, entities, unknown names, missing values";
}

} // namespace
