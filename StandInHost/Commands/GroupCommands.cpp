#include <algorithm>

#include "Commands/CommandFamilies.h"
#include "Commands/Records/AnswerForms.h"
#include "TvwallProtocol.h"

namespace standin_host {

namespace {

using namespace ORVA_NET_PROTOCOL;
using namespace ORVA2_DECODER_TVW;

struct SGroupArguments {
    std::shared_ptr<std::string> pId;
    std::string strName, strChannels, strCount, strInterval;

    SChannelGroup Group() const
    {
        SChannelGroup group{};
        group.nID = Signed(*pId, "the group id");
        group.strName = Fitting(strName, kMaxGroupName, "the group's name");
        group.strChannels = Fitting(strChannels, kMaxGroupChannels, "the channel list");
        group.nInterval = Unsigned(strInterval, "--interval");
        group.nChannels = strCount.empty() ? Listed() : Unsigned(strCount, "--count");
        return group;
    }

private:
    uint32_t Listed() const
    {
        const auto nCommas = std::count(strChannels.begin(), strChannels.end(), ',');
        return strChannels.empty() ? 0 : static_cast<uint32_t>(nCommas + 1);
    }
};

void SetUpGroupRecord(CLI::App& app, SConsoleCommand& command, unsigned int nCmdID, uint32_t nOptType)
{
    const auto pArguments = std::make_shared<SGroupArguments>();
    pArguments->pId = AddWord(app, "ID", "group id");
    app.add_option("--name", pArguments->strName, "the group's name")->type_name("NAME")->required();
    app.add_option("--channels", pArguments->strChannels,
                   "the channels as the decoder lists them, such as 1,2,3; at most 15 bytes")
        ->type_name("LIST")
        ->required();
    app.add_option("--interval", pArguments->strInterval, "polling interval, as the decoder counts")
        ->type_name("N")
        ->required();
    app.add_option("--count", pArguments->strCount, "number of channels (default: as many as are listed)")
        ->type_name("N");
    app.callback([&command, pArguments, nCmdID, nOptType] {
        RequestOption(command, nCmdID, nOptType, GroupRecord(pArguments->Group()));
        command.strTitle += ' ' + *pArguments->pId;
    });
}

} // namespace

void SetUpGroupAdd(CLI::App& app, SConsoleCommand& command)
{
    SetUpGroupRecord(app, command, KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_ADD_CHANNEL_GROUP);
}

void SetUpGroupSet(CLI::App& app, SConsoleCommand& command)
{
    SetUpGroupRecord(app, command, KEST_CMD_TVWALL_DECODE_SAVE_CONFIG, TVWALL_DECODE_SET_CHANNEL_GROUP);
}

void SetUpGroupDelete(CLI::App& app, SConsoleCommand& command)
{
    const auto pIds = AddWords(app, "ID", "group ids");
    app.callback([&command, pIds] {
        std::vector<int32_t> ids;
        for (const std::string& strId : *pIds) {
            ids.push_back(Signed(strId, "the group id"));
        }
        RequestOption(command, KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_DELETE_CHANNEL_GROUP,
                      DeleteGroupsRecord(ids));
        command.strTitle += Join(*pIds);
    });
}

void SetUpGroupGet(CLI::App& app, SConsoleCommand& command)
{
    const auto pId = std::make_shared<std::string>();
    app.add_option("ID", *pId, "group id; without it all groups are read")->type_name("");
    app.callback([&command, pId] {
        const int32_t nID = pId->empty() ? 0 : Signed(*pId, "the group id");
        RequestOption(command, KEST_CMD_TVWALL_DECODE_GET_CONFIG, TVWALL_DECODE_GET_CHANNEL_GROUP,
                      GetGroupRecord(nID), kGroupsForm);
        command.strTitle += pId->empty() ? "" : ' ' + *pId;
    });
}

void SetUpPollingStart(CLI::App& app, SConsoleCommand& command)
{
    static constexpr SField s_fields[] = {FieldOf<int32_t>("the window id"),
                                          FieldOf<uint32_t>("the sub-window index"),
                                          FieldOf<uint32_t>("the group id")};
    SetUpSubWindows(app, command,
                    {s_fields, "WINDOW INDEX GROUP", KEST_CMD_TVWALL_DECODE_OPTION,
                     TVWALL_DECODE_START_CHLGROUP_POLLING, PollingRecord});
}

void SetUpPollingStop(CLI::App& app, SConsoleCommand& command)
{
    static constexpr SField s_fields[] = {FieldOf<int32_t>("the window id"),
                                          FieldOf<int32_t>("the sub-window index")};
    // The decoder ends polling as it ends any other media, so the record is the one that stops media.
    SetUpSubWindows(app, command,
                    {s_fields, "WINDOW INDEX", KEST_CMD_TVWALL_DECODE_OPTION,
                     TVWALL_DECODE_STOP_CHLGROUP_POLLING, StopMediaRecord});
}

} // namespace standin_host
