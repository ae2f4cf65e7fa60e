#include "Workload.h"

#include <iterator>
#include <string>
#include <utility>

#include "Commands/Records/Bytes.h"
#include "Commands/Records/Media.h"
#include "Commands/Records/Payloads.h"
#include "TvwallProtocol.h"

namespace scale {

using namespace ORVA_NET_PROTOCOL;
using namespace ORVA2_DECODER_TVW;
using standin_host::CreateRecord;
using standin_host::PlayMediaRecord;
using standin_host::SRecord;
using standin_host::SSubWindows;
using standin_host::SWindow;

namespace {

// Window ids have 16 bits in some records.
constexpr uint32_t kRounds = 30000;

uint32_t FirstID(uint32_t nRound) { return 1 + nRound % kRounds * 2; }
int32_t GroupID(uint32_t nRound) { return static_cast<int32_t>(1 + nRound % kRounds); }

// A success that gives back nAnswerType and data: the record of the request, or what the decoder holds.
std::vector<uint8_t> Answer(uint32_t nAnswerType, const SRecord& data)
{
    return standin_host::CByteWriter()
        .U32(nAnswerType)
        .U16(8) // of the two numbers that follow the lengths
        .U16(static_cast<int64_t>(data.bytes.size()))
        .Zeros(8)
        .Append(data)
        .Take()
        .bytes;
}

SStep Get(uint32_t nOptType, const SRecord& record, std::vector<uint8_t> answer)
{
    return {KEST_CMD_TVWALL_DECODE_GET_CONFIG, standin_host::OptionPayload(nOptType, record).bytes,
            std::move(answer)};
}

SStep Option(uint32_t nOptType, const SRecord& record)
{
    return {KEST_CMD_TVWALL_DECODE_OPTION, standin_host::OptionPayload(nOptType, record).bytes,
            Answer(nOptType, record)};
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

SWindow FirstWindow(uint32_t nRound) { return {FirstID(nRound), 0, 0, 960, 540, 0, {11, 12, 13, 14}}; }
SWindow SecondWindow(uint32_t nRound) { return {FirstID(nRound) + 1, 960, 0, 960, 540, 0, {21}}; }

SStep Split(uint32_t nRound)
{
    SWindow window = FirstWindow(nRound);
    window.osdIds = {11, 12, 13, 14, 15, 16, 17, 18, 19};
    const SRecord record = CreateRecord({window});
    return {KEST_CMD_TVWALL_DECODE_SAVE_CONFIG,
            standin_host::OptionPayload(TVWALL_DECODE_SET_DECODERFRAME, record).bytes,
            Answer(TVWALL_DECODE_CREATE_CANVAS, record)};
}

// nChannels is not read back.
SRecord Group(uint32_t nRound, uint32_t nChannels)
{
    return standin_host::GroupRecord(
        {GroupID(nRound), "Entrances " + std::to_string(nRound), "1,2,3", nChannels, 10});
}

SStep GetGroup(uint32_t nRound)
{
    const SRecord groups = standin_host::CByteWriter().Count(1).Append(Group(nRound, 0)).Take();
    return Get(TVWALL_DECODE_GET_CHANNEL_GROUP, standin_host::GetGroupRecord(GroupID(nRound)),
               Answer(TVWALL_DECODE_START_CHLGROUP_POLLING, groups));
}

SStep GetLayout()
{
    // A wall without screens has one, with all fields 0.
    return {KEST_CMD_TVWALL_DECODE_GET_WALL_LAYOUT, {}, standin_host::LayoutRecord(2, 2, {{0, 0, 0}}).bytes};
}

// There is no such window any more. A message that is no reply holds no error code, so whoever takes one for
// the reply takes this for done.
SStep RefusedRaise(uint32_t nRound)
{
    SStep step = Option(TVWALL_DECODE_TOP_CANVAS, standin_host::RaiseRecord(FirstID(nRound)));
    step.answer.reset();
    return step;
}

using StepOfRound = SStep (*)(uint32_t nRound);

constexpr StepOfRound kRound[] = {
    [](uint32_t n) {
        return Option(TVWALL_DECODE_CREATE_CANVAS, CreateRecord({FirstWindow(n), SecondWindow(n)}));
    },
    [](uint32_t n) {
        return Option(
            TVWALL_DECODE_MODIFY_CANVAS,
            standin_host::MoveRecord({{static_cast<int32_t>(SecondWindow(n).nID), 1920, 1080, 1920, 1080}}));
    },
    [](uint32_t n) { return Option(TVWALL_DECODE_TOP_CANVAS, standin_host::RaiseRecord(FirstID(n))); },
    Split,
    [](uint32_t n) { return Option(TVWALL_DECODE_DO_PLAY_MEDIA, PlayMediaRecord(FirstID(n), 0, Camera())); },
    [](uint32_t n) {
        return Option(TVWALL_DECODE_PLAYBACK_CTRL, standin_host::PlaybackRecord(First(FirstID(n), 1)));
    },
    [](uint32_t n) {
        return Option(TVWALL_DECODE_PLAY_AUDIO, standin_host::AudioRecord(First(FirstID(n), 1)));
    },
    [](uint32_t n) {
        return Get(TVWALL_DECODE_GET_AUDIO_CONFIG, standin_host::AudioRecord({}),
                   Answer(TVWALL_DECODE_GET_AUDIO_CONFIG, standin_host::AudioRecord(First(FirstID(n), 1))));
    },
    [](uint32_t n) {
        return Option(TVWALL_DECODE_STOP_AUDIO, standin_host::AudioRecord(First(FirstID(n), 1)));
    },
    [](uint32_t n) {
        return Option(TVWALL_DECODE_DO_STOP_PLAY_MEDIA, standin_host::StopMediaRecord(First(FirstID(n), 0)));
    },
    [](uint32_t n) { return Option(TVWALL_DECODE_ADD_CHANNEL_GROUP, Group(n, 3)); },
    GetGroup,
    [](uint32_t n) {
        return Option(TVWALL_DECODE_START_CHLGROUP_POLLING,
                      standin_host::PollingRecord(First(SecondWindow(n).nID, GroupID(n))));
    },
    [](uint32_t n) {
        return Option(TVWALL_DECODE_DEL_CANVAS,
                      standin_host::DeleteRecord({FirstID(n), SecondWindow(n).nID}));
    },
    RefusedRaise,
    [](uint32_t n) {
        return Option(TVWALL_DECODE_DELETE_CHANNEL_GROUP, standin_host::DeleteGroupsRecord({GroupID(n)}));
    },
    [](uint32_t /*n*/) { return GetLayout(); },
};

} // namespace

std::size_t CommandsOfARound() { return std::size(kRound); }

SStep CommandOfRound(std::size_t nIndex, uint32_t nRound) { return kRound[nIndex](nRound); }

} // namespace scale
