// Decodes hostile bytes as every record of the host, or as the kit's answers: the first byte picks which, the
// rest is the payload.

#include <algorithm>
#include <cstring>
#include <iterator>
#include <vector>

#include "DecodeComm.h"
#include "FakeHost.h"
#include "FuzzScript.h"
#include "HostFunctions.h"
#include "MonitorTvwComm.h"
#include "tvwall/answers.h"

namespace {

// Through the base: one record's own SetData says nothing.
template <class Record, class Reader, class Bytes>
bool Decode(CTvwRecord<Record, Reader>& record, const Bytes& bytes)
{
    return record.SetData(bytes.data(), static_cast<unsigned int>(bytes.size()));
}

// Sets every number of a record, its counts included, to all ones.
struct AllOnes {
    void Plain(auto&... values) { (Set(values), ...); }
    void List(auto&&...) {}
    void ImageList(auto&&...) {}
    void Rest(auto&&...) {}
    static void Set(auto& value)
    {
        if constexpr (std::is_integral_v<std::remove_reference_t<decltype(value)>>) {
            value = static_cast<std::remove_reference_t<decltype(value)>>(-1);
        }
    }
};

// What was decoded, whole or in part, can be measured, encoded, logged, verified and decoded once more; a
// whole record gives its bytes back.
template <class Record>
void Exercise(const std::vector<char>& payload)
{
    Record record;
    const bool whole = Decode(record, payload);
    std::string bytes = record.Encode();
    char* data = bytes.data();
    Require(record.GetData(data) == bytes.size());
    Require(!whole ||
            (bytes.size() <= payload.size() && std::equal(bytes.begin(), bytes.end(), payload.begin())));
    record.Dump();
    record.VerifyData();
    const std::string verified = record.Encode();
    Require(Decode(record, verified));
    Require(record.Encode() == verified);
    Observe((whole ? "whole" : "cut") + bytes + verified);
    AllOnes ones;
    Record::Fields(record, ones);
    record.Dump();
    record.VerifyData();
    ObserveLogs();
}

// A record without lists: read whole when there are bytes enough, else left as it was.
template <class Image>
void ExerciseImage(const std::vector<char>& payload)
{
    const Image before{};
    Image image = before;
    const bool whole = ReadImage(payload.data(), static_cast<unsigned int>(payload.size()), image);
    Require(whole == (payload.size() >= sizeof(Image)));
    Require(std::memcmp(&image, whole ? static_cast<const void*>(payload.data()) : &before, sizeof(Image)) ==
            0);
}

// As each kind of answer and notification: a value, or a reason that names a place in the bytes.
void ExerciseAnswers(const std::vector<char>& payload)
{
    const auto check = [&payload](const auto& result) {
        Require(result || result.Why().offset <= payload.size());
        Observe(result ? "read" : std::to_string(result.Why().offset) + result.Why().Text());
    };
    check(tvwall::ReadDone(ORVA2_DECODER_TVW::TVWALL_DECODE_CREATE_CANVAS, payload));
    check(tvwall::ReadLogIn(payload));
    check(tvwall::ReadLayout(payload));
    check(tvwall::ReadSystemInfo(payload));
    check(tvwall::ReadBasicConfig(payload));
    check(tvwall::ReadSound(payload));
    check(tvwall::ReadChannelGroups(payload));
    check(tvwall::ReadDisplaySwitches(payload));
    check(tvwall::ReadFailure(payload));
    check(tvwall::ReadNotification(ORVA2_DECODER_TVW::TVWALL_DECODE_NOTIFY_IORES, payload));
}

// The first byte of a corpus file is a place in this table; new ones go to its end.
constexpr void (*kRecords[])(const std::vector<char>&) = {
    Exercise<ORVA2_CLIENT_TVW::S_MTvw_Create_CavansWindow>,
    Exercise<ORVA2_CLIENT_TVW::S_MTvw_Del_CavansWindow>,
    Exercise<ORVA2_CLIENT_TVW::S_MTvw_Modyfy_CavansWindow>,
    Exercise<ORVA2_CLIENT_TVW::S_MTvw_Canvas_Item_V2>,
    Exercise<ORVA2_CLIENT_TVW::S_MTvw_Screen>,
    Exercise<ORVA2_DECODER_TVW::S_Create_Cavans_WindowInfo>,
    Exercise<ORVA2_DECODER_TVW::S_Cavans_Sub_WindowInfo>,
    Exercise<ORVA2_DECODER_TVW::S_Delete_Canvas_Window_Item>,
    Exercise<ORVA2_DECODER_TVW::S_Roar_CanvasWindow_Item>,
    Exercise<ORVA2_CLIENT_TVW::S_MTvw_Wall_Layout>,
    Exercise<ORVA2_CLIENT_TVW::S_MTvw_Wall_WallLayout_Item>,
    Exercise<ORVA2_DECODER_TVW::S_Decoder_Draw_Border>,
    Exercise<ORVA2_DECODER_TVW::S_Decoder_Draw_Border_Wind>,
    Exercise<ORVA2_CLIENT_TVW::S_MTvw_Wall_Media>,
    Exercise<ORVA2_CLIENT_TVW::S_MTvw_Wall_Media_info>,
    Exercise<ORVA2_CLIENT_TVW::S_MTvw_Wall_Set_wall_V2>,
    Exercise<ORVA2_DECODER_TVW::S_Playback_Ctrl_Items_V2>,
    Exercise<ORVA2_CLIENT_TVW::S_MTvw_Get_Audio_Config>,
    Exercise<ORVA2_CLIENT_TVW::S_MTvw_Wall_Channel_Group_Info>,
    Exercise<ORVA2_CLIENT_TVW::S_MTvw_Wall_Delete_Channel_Group>,
    Exercise<ORVA2_CLIENT_TVW::S_MTvw_Wall_Start_Chl_GrPolling>,
    Exercise<ORVA2_CLIENT_TVW::S_MTvw_Wall_Get_ChGroup_info>,
    Exercise<ORVA2_CLIENT_TVW::S_MTvw_Wall_Get_ChGroup>,
    ExerciseImage<ORVA2_CLIENT_TVW::S_MTvw_Top_Canvas_Item>,
    ExerciseImage<ORVA2_CLIENT_TVW::S_MTvw_PlanWnd_Zoom_v2>,
    ExerciseImage<ORVA2_CLIENT_TVW::S_MTvw_Wall_Set_WindCfg_V2>,
    Exercise<ORVA2_CLIENT_TVW::S_MTvw_Wall_Basic_Config>,
    ExerciseAnswers,
    Exercise<ORVA2_DECODER_TVW::S_Playback_Ctrl_Cavs>,
    Exercise<ORVA2_CLIENT_TVW::S_MTvw_Get_AuCfg_Cav>,
    Exercise<ORVA2_CLIENT_TVW::S_MTvw_Wall_Chl_GrPolling_Winitem>,
    Exercise<ORVA2_CLIENT_TVW::S_MTvw_Wall_Media_Wind>,
    Exercise<ORVA2_CLIENT_TVW::S_MTvw_Wall_Set_wall_Wind>,
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* input, size_t size)
{
    fake_host::SetLogRecording(g_outcome != nullptr);
    SetRecordOutput(SHARESDK_NormalOutput, SHARESDK_AbnormalOutput);
    if (size != 0) {
        // A payload of its own size, so that the sanitizer sees reads behind its end.
        kRecords[input[0] % std::size(kRecords)](std::vector<char>(input + 1, input + size));
    }
    return 0;
}
