#include "MediaFixture.h"
#include "MonitorTvwCommWallInfo.h"
#include "RecordChecks.h"

using namespace ORVA2_CLIENT_TVW;

namespace {

class WallInfoTest : public MediaFixture {
protected:
    static std::string Window(unsigned int id, unsigned long nSubWindows)
    {
        return Bytes().U16(id).U16(2).U16(3).U16(40000).U16(5).U16(0xFFFF).U16(7).U32(nSubWindows);
    }
    static std::string SubWindow(const std::string& guid, unsigned long nChannel, unsigned int nReqMode,
                                 const std::string& user = USER, const std::string& pwd = PASSWORD)
    {
        Bytes media = Bytes().U16(0xFFFF).U16(9).U16(60000).U16(nReqMode).U16(50000).Text("gp");
        media.U32(1).U32(2).U32(0xFFFFFFFF).Text(guid).Text(Field("10.0.0.1", 32));
        return media.Text(Field(user, 256)).Text(Field(pwd, 256)).U32(nChannel);
    }
    static std::string WindowItem(const std::string& id, const std::string& subItems)
    {
        return Item(
            Elem("id", id) +
            Elem("rect", Elem("xpos", 40000) + Elem("ypos", 5) + Elem("width", 65535) + Elem("height", 7)) +
            Elem("layerindex", 2) + Elem("mode", 3) + Elem("td_subwindowlist", subItems));
    }
    static std::string SubItem(const std::string& media)
    {
        return Item(Elem("index", 65535) + Elem("osdid", 9) + media);
    }
    static std::string MediaInfo(const std::string& channelid, int nReqMode, const std::string& user = USER,
                                 const std::string& pwd = PASSWORD)
    {
        return Elem("mediainfo", Elem("type", 60000) + Elem("reqmode", nReqMode) + Elem("addr", "10.0.0.1") +
                                     Elem("port", 50000) + Elem("channelid", channelid) + Elem("user", user) +
                                     Elem("pwd", pwd) + Elem("streamtype", 4294967295));
    }
    static std::string Wall(const std::string& items) { return Body(Elem("td_windowlist", items)); }
    void CheckWall(const char* what, const std::string& record, const std::string& items)
    {
        Check({what, 0x50001, 0x60010, record, "setwallinfo", Wall(items), 0x60010});
    }
};

TEST_F(WallInfoTest, TheRequestModeChoosesTheChannel)
{
    LogInWithMediaKey();
    const std::string zeroText = "{00000000-0000-0000-0000-000000000000}";
    const struct {
        std::string subWindow, media;
    } cases[] = {
        {SubWindow(NO_GUID, -1UL, 6), ""},
        {SubWindow(NO_GUID, -1UL, 5), ""},
        {SubWindow(NO_GUID, -2UL, 6), MediaInfo("-2", 6)},
        {SubWindow(NO_GUID, 0, 6), MediaInfo("0", 6)},
        {SubWindow(NO_GUID, 0, 5), MediaInfo(zeroText, 5)},
        {SubWindow(GUID_BYTES, 12, 6), MediaInfo("12", 6)},
        {SubWindow(GUID_BYTES, -1UL, 6), MediaInfo("-1", 6)},
        {SubWindow(GUID_BYTES, 12, 65535), MediaInfo(GUID_TEXT, 65535)},
        {SubWindow(GUID_BYTES, 12, 0, "", std::string(86, 'p')), MediaInfo(GUID_TEXT, 0, "", "")},
    };
    std::string record = Bytes().U32(2).Text(Window(8, std::size(cases))), subItems;
    for (const auto& c : cases) {
        record += c.subWindow;
        subItems += SubItem(c.media);
    }
    record += Window(65535, 0);
    CheckWall("whole", record, WindowItem("8", subItems) + WindowItem("65535", ""));
    CheckWall("second window cut", record.substr(0, record.size() - 1), WindowItem("8", subItems));
    CheckWall("head cut", "\1\1\1", "");
    CheckFailures(0x50001, 0x60010);
    LogIn("");
    CheckWall("no key", Bytes().U32(1).Text(Window(8, 1)).Text(SubWindow(NO_GUID, 3, 6)),
              WindowItem("8", SubItem(MediaInfo("3", 6, "", ""))));
}

TEST_F(WallInfoTest, RecordsKeepEveryByteRefuseCountsThatDoNotFitAndHideCredentials)
{
    const std::string subWindow = SubWindow(GUID_BYTES, 5, 6);
    RoundTrips<S_MTvw_Wall_Set_wall_V2>(Bytes().U32(2).Text(Window(8, 1)).Text(subWindow).Text(Window(9, 0)));

    S_MTvw_Wall_Set_wall_V2 record;
    for (const unsigned long count : {2UL, 0x40000000UL, 0x80000000UL, -1UL}) { // some wrap in 32 bits
        EXPECT_FALSE(Decode(record, Bytes().U32(count).Text(Window(8, 0))));
        EXPECT_FALSE(Decode(record, Bytes().U32(1).Text(Window(8, count)).Text(subWindow)));
        EXPECT_TRUE(record._windList.empty());
    }
    ASSERT_TRUE(Decode(record, Bytes().U32(1).Text(Window(8, 1)).Text(subWindow)));
    fake_host::Reset();
    record.Dump();
    EXPECT_NE(fake_host::Logs().back().text.find("addr:10.0.0.1 "), std::string::npos);
}

} // namespace
