#include "MediaFixture.h"

namespace {

using WallInfoTest = MediaFixture;

std::string Window(unsigned int id, unsigned long nSubWindows)
{
    return Bytes().U16(id).U16(2).U16(3).U16(40000).U16(5).U16(0xFFFF).U16(7).U32(nSubWindows);
}

std::string WallItem(const std::string& id, const std::string& subItems)
{
    const std::string rect = Elem("xpos", 40000) + Elem("ypos", 5) + Elem("width", 65535) + Elem("height", 7);
    return Item(Elem("id", id) + Elem("rect", rect) + Elem("layerindex", 2) + Elem("mode", 3) +
                Elem("td_subwindowlist", subItems));
}

std::string SubWindow(const std::string& guid, unsigned long nChannel, unsigned int nReqMode)
{
    Bytes media = Bytes().U16(0xFFFF).U16(9).U16(60000).U16(nReqMode).U16(50000).Text("gp").U32(1).U32(2);
    media.U32(0xFFFFFFFF).Text(guid).Text(Field("10.0.0.1", 32));
    return media.Text(Field(SOURCE_USER, 256)).Text(Field(SOURCE_PASSWORD, 256)).U32(nChannel);
}

// Without a channel there is no media element.
std::string SubItem(const std::string& channelid, int nReqMode)
{
    const std::string media = Elem("type", 60000) + Elem("reqmode", nReqMode) + Elem("addr", "10.0.0.1") +
                              Elem("port", 50000) + Elem("channelid", channelid) + Elem("user", SOURCE_USER) +
                              Elem("pwd", SOURCE_PASSWORD) + Elem("streamtype", 4294967295);
    return Item(Elem("index", 65535) + Elem("osdid", 9) +
                (channelid.empty() ? "" : Elem("mediainfo", media)));
}

TEST_F(WallInfoTest, TheRequestModeChoosesTheChannel)
{
    LogInWithMediaKey();
    const std::string zeroText = "{00000000-0000-0000-0000-000000000000}";
    const struct {
        std::string guid;
        unsigned long nChannel;
        int nReqMode;
        std::string channelid;
    } rows[] = {
        {NO_GUID, -1UL, 6, ""},      {NO_GUID, -1UL, 5, ""},         {NO_GUID, -2UL, 6, "-2"},
        {NO_GUID, 0, 6, "0"},        {NO_GUID, 0, 5, zeroText},      {GUID_BYTES, 12, 6, "12"},
        {GUID_BYTES, -1UL, 6, "-1"}, {GUID_BYTES, 12, 0, GUID_TEXT}, {GUID_BYTES, 12, 65535, GUID_TEXT},
    };
    std::string record = Bytes().U32(2).Text(Window(8, std::size(rows))), subItems;
    for (const auto& row : rows) {
        record += SubWindow(row.guid, row.nChannel, static_cast<unsigned int>(row.nReqMode));
        subItems += SubItem(row.channelid, row.nReqMode);
    }
    record += Window(65535, 0);
    const std::pair<std::string, std::string> cases[] = {
        {record, WallItem("8", subItems) + WallItem("65535", "")},
        {record.substr(0, record.size() - 1), WallItem("8", subItems)}, // second window cut
        {"\1\1\1", ""},
    };
    for (const auto& [bytes, items] : cases) {
        Check("whole wall", "SetWallInfo", bytes, Windows(items));
    }
}

} // namespace
