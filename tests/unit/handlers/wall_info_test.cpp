#include "MediaFixture.h"
#include <tuple>

namespace {

using WallInfoTest = MediaFixture;

TEST_F(WallInfoTest, TheRequestModeChoosesTheChannel)
{
    LogInWithMediaKey();
    const std::string zeroText = "{00000000-0000-0000-0000-000000000000}";
    const std::tuple<std::string, unsigned long, int, std::string> rows[] = {
        {NO_GUID, -1UL, 6, ""},      {NO_GUID, -1UL, 5, ""},         {NO_GUID, -2UL, 6, "-2"},
        {NO_GUID, 0, 6, "0"},        {NO_GUID, 0, 5, zeroText},      {GUID_BYTES, 12, 6, "12"},
        {GUID_BYTES, -1UL, 6, "-1"}, {GUID_BYTES, 12, 0, GUID_TEXT}, {GUID_BYTES, 12, 65535, GUID_TEXT},
    };
    std::string record = Bytes().U32(2).Text(WallWindowRecord(8, std::size(rows))), subItems;
    for (const auto& [guid, nChannel, nReqMode, channelid] : rows) {
        record += WallStreamRecord(guid, nChannel, static_cast<unsigned int>(nReqMode));
        subItems += WallStreamItem(channelid, nReqMode);
    }
    record += WallWindowRecord(65535, 0);
    const std::pair<std::string, std::string> cases[] = {
        {record, WallWindowItem("8", subItems) + WallWindowItem("65535", "")},
        {record.substr(0, record.size() - 1), WallWindowItem("8", subItems)}, // second window cut
        {"\1\1\1", ""},
    };
    for (const auto& [bytes, items] : cases) {
        Check("whole wall", "SetWallInfo", bytes, Windows(items));
    }
}

} // namespace
