#include "Workload.h"

#include "Media.h"
#include "Payloads.h"
#include "TvwallProtocol.h"

namespace scale {

using namespace ORVA_NET_PROTOCOL;
using namespace ORVA2_DECODER_TVW;
using standin_host::SRecord;
using standin_host::SSubWindows;
using standin_host::SWindow;

namespace {

constexpr int32_t GROUP_ID = 7;

SStep GetConfig(uint32_t nOptType, const SRecord& record)
{
    return {KEST_CMD_TVWALL_DECODE_GET_CONFIG, standin_host::OptionPayload(nOptType, record).bytes};
}

SStep SaveConfig(uint32_t nOptType, const SRecord& record)
{
    return {KEST_CMD_TVWALL_DECODE_SAVE_CONFIG, standin_host::OptionPayload(nOptType, record).bytes};
}

SStep Option(uint32_t nOptType, const SRecord& record)
{
    return {KEST_CMD_TVWALL_DECODE_OPTION, standin_host::OptionPayload(nOptType, record).bytes};
}

// What a command says of the first sub-window of one window.
std::vector<SSubWindows> First(int64_t nWindow, int64_t nFirst, int64_t nSecond = 0)
{
    return {{nWindow, {{0, nFirst, nSecond}}}};
}

standin_host::SMedia Camera()
{
    standin_host::SMedia media;
    media.nRequestMode = standin_host::kNumericChannelMode;
    media.strAddress = "192.0.2.20";
    media.nPort = 9008;
    media.nChannel = 3;
    media.strUser = "viewer";
    media.strPassword = "passage";
    return media;
}

} // namespace

std::vector<SStep> RoundOfCommands()
{
    const std::vector<SWindow> windows = {{1, 0, 0, 960, 540, 0, {11, 12, 13, 14}},
                                          {2, 960, 0, 960, 540, 0, {21}}};
    const std::vector<SWindow> split = {{1, 0, 0, 960, 540, 0, {11, 12, 13, 14, 15, 16, 17, 18, 19}}};
    return {
        Option(TVWALL_DECODE_CREATE_CANVAS, CreateRecord(windows)),
        Option(TVWALL_DECODE_MODIFY_CANVAS, standin_host::MoveRecord({{2, 1920, 1080, 1920, 1080}})),
        Option(TVWALL_DECODE_TOP_CANVAS, standin_host::RaiseRecord(1)),
        SaveConfig(TVWALL_DECODE_SET_DECODERFRAME, CreateRecord(split)),
        Option(TVWALL_DECODE_DO_PLAY_MEDIA, PlayMediaRecord(1, 0, Camera())),
        Option(TVWALL_DECODE_PLAYBACK_CTRL, standin_host::PlaybackRecord(First(1, 1))),
        Option(TVWALL_DECODE_PLAY_AUDIO, standin_host::AudioRecord(First(1, 1))),
        GetConfig(TVWALL_DECODE_GET_AUDIO_CONFIG, standin_host::AudioRecord({})),
        Option(TVWALL_DECODE_STOP_AUDIO, standin_host::AudioRecord(First(1, 1))),
        Option(TVWALL_DECODE_DO_STOP_PLAY_MEDIA, standin_host::StopMediaRecord(First(1, 0))),
        Option(TVWALL_DECODE_ADD_CHANNEL_GROUP,
               standin_host::GroupRecord({GROUP_ID, "Entrances", "1,2,3", 3, 10})),
        GetConfig(TVWALL_DECODE_GET_CHANNEL_GROUP, standin_host::GetGroupRecord(GROUP_ID)),
        Option(TVWALL_DECODE_START_CHLGROUP_POLLING, standin_host::PollingRecord(First(2, GROUP_ID))),
        Option(TVWALL_DECODE_DEL_CANVAS, standin_host::DeleteRecord({1, 2})),
        Option(TVWALL_DECODE_DELETE_CHANNEL_GROUP, standin_host::DeleteGroupsRecord({GROUP_ID})),
        {KEST_CMD_TVWALL_DECODE_GET_WALL_LAYOUT, {}},
    };
}

} // namespace scale
