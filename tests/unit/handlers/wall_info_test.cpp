#include "WallCommandFixture.h"
#include <tuple>

namespace {

using WallInfoTest = WallCommandFixture;

TEST_F(WallInfoTest, TheRequestModeChoosesTheChannel)
{
    const std::string zeroText = "{00000000-0000-0000-0000-000000000000}";
    const std::string low = std::string(15, '\0') + "P", lowText = "{00000000-0000-0000-0000-000000000050}";
    const std::tuple<std::string, unsigned long, int, std::string> rows[] = {
        {kNoGuid, -1UL, 6, ""},      {kNoGuid, -1UL, 5, ""},         {kNoGuid, -2UL, 6, "-2"},
        {kNoGuid, 0, 6, "0"},        {kNoGuid, 0, 5, zeroText},      {kGuidBytes, 12, 6, "12"},
        {kGuidBytes, -1UL, 6, "-1"}, {kGuidBytes, 12, 0, kGuidText}, {low, -1UL, 65535, lowText},
    };
    std::string record = Bytes().U32(2).Text(WallWindowRecord(8, std::size(rows))), subItems;
    for (const auto& [guid, channel, reqMode, channelid] : rows) {
        record += WallStreamRecord(guid, channel, static_cast<unsigned int>(reqMode));
        subItems += WallStreamItem(channelid, reqMode);
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
