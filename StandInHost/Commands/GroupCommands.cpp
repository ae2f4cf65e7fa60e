#include <algorithm>

#include "Commands/CommandFamilies.h"
#include "Commands/Records/AnswerForms.h"
#include "TvwallProtocol.h"

namespace standin_host {

namespace {

using namespace ORVA_NET_PROTOCOL;
using namespace ORVA2_DECODER_TVW;

struct GroupArguments {
    std::shared_ptr<std::string> idWord;
    std::string name, channelList, countWord, interval;

    ChannelGroup Group() const
    {
        ChannelGroup group{};
        group.id = Signed(*idWord, "the group id");
        group.name = Fitting(name, kMaxGroupName, "the group's name");
        group.channelList = Fitting(channelList, kMaxGroupChannels, "the channel list");
        group.interval = Unsigned(interval, "--interval");
        group.channelCount = countWord.empty() ? Listed() : Unsigned(countWord, "--count");
        return group;
    }

private:
    uint32_t Listed() const
    {
        const auto commas = std::count(channelList.begin(), channelList.end(), ',');
        return channelList.empty() ? 0 : static_cast<uint32_t>(commas + 1);
    }
};

void SetUpGroupRecord(CLI::App& app, ConsoleCommand& command, unsigned int cmdID, uint32_t optType)
{
    const auto arguments = std::make_shared<GroupArguments>();
    arguments->idWord = AddWord(app, "GROUP", "group id");
    app.add_option("--name", arguments->name, "the group's name")->type_name("NAME")->required();
    app.add_option("--channels", arguments->channelList,
                   "the channels as the decoder lists them, such as 1,2,3; at most 15 bytes")
        ->type_name("LIST")
        ->required();
    app.add_option("--interval", arguments->interval, "polling interval, as the decoder counts")
        ->type_name("N")
        ->required();
    app.add_option("--count", arguments->countWord, "number of channels (default: as many as are listed)")
        ->type_name("N");
    app.callback([&command, arguments, cmdID, optType] {
        const ChannelGroup group = arguments->Group();
        RequestOption(command, cmdID, optType, GroupRecord(group));
        command.args = {{"id", group.id},
                        {"name", group.name},
                        {"channels", group.channelList},
                        {"count", group.channelCount},
                        {"interval", group.interval}};
        command.title += ' ' + *arguments->idWord;
    });
}

} // namespace

void SetUpGroupAdd(CLI::App& app, ConsoleCommand& command)
{
    SetUpGroupRecord(app, command, KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_ADD_CHANNEL_GROUP);
}

void SetUpGroupSet(CLI::App& app, ConsoleCommand& command)
{
    SetUpGroupRecord(app, command, KEST_CMD_TVWALL_DECODE_SAVE_CONFIG, TVWALL_DECODE_SET_CHANNEL_GROUP);
}

void SetUpGroupDelete(CLI::App& app, ConsoleCommand& command)
{
    const auto idWords = AddWords(app, "GROUP", "group ids");
    app.callback([&command, idWords] {
        std::vector<int32_t> ids;
        for (const std::string& id : *idWords) {
            ids.push_back(Signed(id, "the group id"));
        }
        RequestOption(command, KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_DELETE_CHANNEL_GROUP,
                      DeleteGroupsRecord(ids));
        command.args["ids"] = ids;
        command.title += Join(*idWords);
    });
}

void SetUpGroupGet(CLI::App& app, ConsoleCommand& command)
{
    const auto idWord = std::make_shared<std::string>();
    app.add_option("GROUP", *idWord, "group id; without it all groups are read")->type_name("");
    app.callback([&command, idWord] {
        const int32_t id = idWord->empty() ? 0 : Signed(*idWord, "the group id");
        RequestOption(command, KEST_CMD_TVWALL_DECODE_GET_CONFIG, TVWALL_DECODE_GET_CHANNEL_GROUP,
                      GetGroupRecord(id), kGroupsForm);
        if (!idWord->empty()) {
            command.args["id"] = id;
        }
        command.title += idWord->empty() ? "" : ' ' + *idWord;
    });
}

void SetUpPollingStart(CLI::App& app, ConsoleCommand& command)
{
    static constexpr Field kFields[] = {FieldOf<int32_t>("the window id"),
                                        FieldOf<uint32_t>("the sub-window index"),
                                        FieldOf<uint32_t>("the group id")};
    SetUpSubWindows(app, command,
                    {kFields,
                     "WINDOW INDEX GROUP",
                     KEST_CMD_TVWALL_DECODE_OPTION,
                     TVWALL_DECODE_START_CHLGROUP_POLLING,
                     PollingRecord,
                     {"group"}});
}

void SetUpPollingStop(CLI::App& app, ConsoleCommand& command)
{
    static constexpr Field kFields[] = {FieldOf<int32_t>("the window id"),
                                        FieldOf<int32_t>("the sub-window index")};
    // The decoder stops polling as it stops any media, so the record is the one that stops media.
    SetUpSubWindows(app, command,
                    {kFields, "WINDOW INDEX", KEST_CMD_TVWALL_DECODE_OPTION,
                     TVWALL_DECODE_STOP_CHLGROUP_POLLING, StopMediaRecord});
}

} // namespace standin_host
