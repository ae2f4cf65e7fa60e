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
using standin_host::Record;
using standin_host::SubWindows;
using standin_host::Window;

namespace {

// Window ids have 16 bits in some records.
constexpr uint32_t kRounds = 30000;

uint32_t FirstID(uint32_t round) { return 1 + round % kRounds * 2; }
int32_t GroupID(uint32_t round) { return static_cast<int32_t>(1 + round % kRounds); }

// A success that returns answerType and data: the request's record, or what the decoder holds.
std::vector<uint8_t> Answer(uint32_t answerType, const Record& data)
{
    return standin_host::ByteWriter()
        .U32(answerType)
        .U16(8) // length of the two numbers that follow the lengths
        .U16(static_cast<int64_t>(data.bytes.size()))
        .Zeros(8)
        .Append(data)
        .Take()
        .bytes;
}

Step Get(uint32_t optType, const Record& record, std::vector<uint8_t> answer)
{
    return {KEST_CMD_TVWALL_DECODE_GET_CONFIG, standin_host::OptionPayload(optType, record).bytes,
            std::move(answer)};
}

Step Option(uint32_t optType, const Record& record)
{
    return {KEST_CMD_TVWALL_DECODE_OPTION, standin_host::OptionPayload(optType, record).bytes,
            Answer(optType, record)};
}

// A command's values for the first sub-window of one window.
std::vector<SubWindows> First(int64_t window, int64_t first, int64_t second = 0)
{
    return {{window, {{0, first, second}}}};
}

standin_host::Media Camera()
{
    standin_host::Media media;
    media.requestMode = standin_host::kNumericChannelMode;
    media.address = "192.0.2.20";
    media.port = 9008;
    media.channelNumber = 3;
    media.user = "viewer";
    media.password = "passage";
    return media;
}

Window FirstWindow(uint32_t round) { return {FirstID(round), 0, 0, 960, 540, 0, {11, 12, 13, 14}}; }
Window SecondWindow(uint32_t round) { return {FirstID(round) + 1, 960, 0, 960, 540, 0, {21}}; }

Step Split(uint32_t round)
{
    Window window = FirstWindow(round);
    window.osdIds = {11, 12, 13, 14, 15, 16, 17, 18, 19};
    const Record record = CreateRecord({window});
    return {KEST_CMD_TVWALL_DECODE_SAVE_CONFIG,
            standin_host::OptionPayload(TVWALL_DECODE_SET_DECODERFRAME, record).bytes,
            Answer(TVWALL_DECODE_CREATE_CANVAS, record)};
}

// channelCount is not read back.
Record Group(uint32_t round, uint32_t channelCount)
{
    return standin_host::GroupRecord(
        {GroupID(round), "Entrances " + std::to_string(round), "1,2,3", channelCount, 10});
}

Step GetGroup(uint32_t round)
{
    const Record groups = standin_host::ByteWriter().Count(1).Append(Group(round, 0)).Take();
    return Get(TVWALL_DECODE_GET_CHANNEL_GROUP, standin_host::GetGroupRecord(GroupID(round)),
               Answer(TVWALL_DECODE_START_CHLGROUP_POLLING, groups));
}

Step GetLayout()
{
    // A wall without screens has one, with all fields 0.
    return {KEST_CMD_TVWALL_DECODE_GET_WALL_LAYOUT, {}, standin_host::LayoutRecord(2, 2, {{0, 0, 0}}).bytes};
}

// The window no longer exists. A message that is not a reply holds no error code, so mistaking one for the
// reply would report success.
Step RefusedRaise(uint32_t round)
{
    Step step = Option(TVWALL_DECODE_TOP_CANVAS, standin_host::RaiseRecord(FirstID(round)));
    step.answer.reset();
    return step;
}

using StepOfRound = Step (*)(uint32_t round);

constexpr StepOfRound kRound[] = {
    [](uint32_t n) {
        return Option(TVWALL_DECODE_CREATE_CANVAS, CreateRecord({FirstWindow(n), SecondWindow(n)}));
    },
    [](uint32_t n) {
        return Option(
            TVWALL_DECODE_MODIFY_CANVAS,
            standin_host::MoveRecord({{static_cast<int32_t>(SecondWindow(n).id), 1920, 1080, 1920, 1080}}));
    },
    [](uint32_t n) { return Option(TVWALL_DECODE_TOP_CANVAS, standin_host::RaiseRecord(FirstID(n))); },
    Split,
    [](uint32_t n) {
        return Option(TVWALL_DECODE_DO_PLAY_MEDIA,
                      PlayMediaRecord(static_cast<int32_t>(FirstID(n)), 0, Camera()));
    },
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
                      standin_host::PollingRecord(First(SecondWindow(n).id, GroupID(n))));
    },
    [](uint32_t n) {
        return Option(TVWALL_DECODE_DEL_CANVAS, standin_host::DeleteRecord({FirstID(n), SecondWindow(n).id}));
    },
    RefusedRaise,
    [](uint32_t n) {
        return Option(TVWALL_DECODE_DELETE_CHANNEL_GROUP, standin_host::DeleteGroupsRecord({GroupID(n)}));
    },
    [](uint32_t /*n*/) { return GetLayout(); },
};

} // namespace

std::size_t CommandsOfARound() { return std::size(kRound); }

Step CommandOfRound(std::size_t index, uint32_t round) { return kRound[index](round); }

} // namespace scale
