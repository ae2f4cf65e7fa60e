#include "Workload.h"

#include "Payloads.h"
#include "TvwallProtocol.h"

namespace scale {

using namespace ORVA_NET_PROTOCOL;
using namespace ORVA2_DECODER_TVW;
using standin_host::CByteWriter;
using standin_host::SWindow;

namespace {

constexpr uint32_t GROUP_ID = 7;

std::vector<uint8_t> SoundRecord(uint32_t nWindow, uint32_t nSubWindow, uint32_t nChannel)
{
    return CByteWriter()
        .Zeros(2 * sizeof(GUID))
        .U32(1)
        .U32(nWindow)
        .U32(1)
        .U32(nSubWindow)
        .U32(nChannel)
        .Take();
}

std::vector<uint8_t> GroupRecord()
{
    constexpr uint32_t CHANNELS = 3;
    constexpr uint32_t INTERVAL = 10;
    return CByteWriter()
        .Zeros(sizeof(GUID))
        .U32(GROUP_ID)
        .U32(CHANNELS)
        .U32(INTERVAL)
        .Text("Entrances", 256)
        .Text("1,2,3", 16)
        .Take();
}

std::vector<uint8_t> GetGroupRecord() { return CByteWriter().Zeros(sizeof(GUID)).U32(GROUP_ID).Take(); }

std::vector<uint8_t> DeleteGroupRecord()
{
    return CByteWriter().Zeros(sizeof(GUID)).U32(1).U32(GROUP_ID).Take();
}

std::vector<uint8_t> PollingRecord(uint32_t nWindow)
{
    return CByteWriter().Zeros(sizeof(GUID)).U32(1).U32(nWindow).U32(1).U32(0).U32(GROUP_ID).Take();
}

std::vector<uint8_t> PlaybackRecord(uint16_t nWindow)
{
    return CByteWriter().U16(1).U16(nWindow).U16(1).U16(0).U16(1).U16(0).Take();
}

} // namespace

std::vector<SStep> RoundOfCommands()
{
    const std::vector<SWindow> windows = {{1, 0, 0, 960, 540, 0, {11, 12, 13, 14}},
                                          {2, 960, 0, 960, 540, 0, {21}}};
    const std::vector<SWindow> split = {{1, 0, 0, 960, 540, 0, {11, 12, 13, 14, 15, 16, 17, 18, 19}}};
    const auto step = [](unsigned int nCmdID, uint32_t nOptType, const std::vector<uint8_t>& record) {
        return SStep{nCmdID, standin_host::OptionPayload(nOptType, record)};
    };
    return {
        step(KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_CREATE_CANVAS, CreateRecord(windows)),
        step(KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_MODIFY_CANVAS,
             standin_host::MoveRecord({{2, 1920, 1080, 1920, 1080}})),
        step(KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_TOP_CANVAS, standin_host::RaiseRecord(1)),
        step(KEST_CMD_TVWALL_DECODE_SAVE_CONFIG, TVWALL_DECODE_SET_DECODERFRAME, CreateRecord(split)),
        step(KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_PLAY_AUDIO, SoundRecord(1, 0, 1)),
        step(KEST_CMD_TVWALL_DECODE_GET_CONFIG, TVWALL_DECODE_GET_AUDIO_CONFIG, SoundRecord(1, 0, 1)),
        step(KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_STOP_AUDIO, SoundRecord(1, 0, 1)),
        step(KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_ADD_CHANNEL_GROUP, GroupRecord()),
        step(KEST_CMD_TVWALL_DECODE_GET_CONFIG, TVWALL_DECODE_GET_CHANNEL_GROUP, GetGroupRecord()),
        step(KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_START_CHLGROUP_POLLING, PollingRecord(2)),
        step(KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_PLAYBACK_CTRL, PlaybackRecord(1)),
        step(KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_DEL_CANVAS, standin_host::DeleteRecord({1, 2})),
        step(KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_DELETE_CHANNEL_GROUP, DeleteGroupRecord()),
    };
}

} // namespace scale
