#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <limits>
#include <set>
#include <string>
#include <unistd.h>
#include <vector>

#include "DecodeCommPlayback.h"
#include "FakeHost.h"
#include "MonitorTvwComm.h"
#include "MonitorTvwCommAudio.h"
#include "MonitorTvwCommChannelGroup.h"
#include "RecordChecks.h"

using namespace ORVA2_CLIENT_TVW;
using namespace ORVA2_DECODER_TVW;

namespace {

// A payload, written value by value.
struct Bytes : std::string {
    template <class... Value>
    explicit Bytes(Value... value)
    {
        (append(reinterpret_cast<const char*>(&value), sizeof(value)), ...);
    }
};

std::string Command(uint32_t count)
{
    return Bytes(GUID{0x01234567, 0x89AB, 0xCDEF, {1, 2, 3, 4, 5, 6, 7, 8}}, GUID{1, 2, 3, {}}, count);
}

std::string Window(uint32_t id, uint32_t subWindows)
{
    std::string bytes = Bytes(id, 10, 20, 30, 40, int16_t{1}, int16_t{2}, int16_t{3}, int16_t{4});
    bytes += Bytes(subWindows, 5, -6);
    for (uint32_t i = 0; i < subWindows; ++i) {
        bytes += Bytes(i, 100 + i);
    }
    return bytes;
}

std::string CanvasHead(int16_t windows, int screens)
{
    std::string bytes;
    for (const int value : {-1, -2, 3, 4, -5, -6, 7, 8, 9, 10}) {
        bytes += Bytes(static_cast<int16_t>(value));
    }
    return bytes + Bytes(windows, screens);
}

std::string LogicScreen(int id)
{
    return Bytes(id, int16_t{-1}, int16_t{-2}, uint16_t{1920}, uint16_t{1080});
}

std::string ScreenWindow(int id) { return Bytes(id, 0.5f, 1.5f, 2.5f, 3.5f) + "twenty bytes of more"; }

std::string ScreenHead(int8_t windows, int8_t pips)
{
    return ScreenWindow(7) + Bytes(uint8_t{1}, uint8_t{255}, windows, pips);
}

using Texts = std::vector<std::string>;

template <class Record>
Texts Dumped(const std::string& bytes)
{
    Record record;
    EXPECT_TRUE(Decode(record, bytes));
    fake_host::Reset();
    record.Dump();
    Texts texts;
    for (const auto& log : fake_host::Logs()) {
        EXPECT_EQ(log.level, fake_host::LogLevel::Normal);
        texts.push_back(log.text);
    }
    return texts;
}

} // namespace

class Records : public testing::Test {
protected:
    void SetUp() override { fake_host::Reset(); }
};

TEST_F(Records, KeepEveryByteAndRefuseEveryShorterPayload)
{
    RoundTrips<S_MTvw_Create_CavansWindow>(Command(3) + Window(1, 4) + Window(2, 0) + Window(3, 1));
    RoundTrips<S_MTvw_Del_CavansWindow>(Command(2) + Bytes(5, 6));
    RoundTrips<S_MTvw_Modyfy_CavansWindow>(Command(2) + Bytes(1, -10, 2, 3, 4) + Bytes(2, 5, -6, 7, 8));
    RoundTrips<S_MTvw_Canvas_Item_V2>(CanvasHead(0, 0));
    RoundTrips<S_MTvw_Canvas_Item_V2>(CanvasHead(2, 0) + Window(1, 2) + Window(2, 0));
    RoundTrips<S_MTvw_Canvas_Item_V2>(CanvasHead(1, 2) + LogicScreen(3) + LogicScreen(4) + Window(1, 1));
    RoundTrips<S_MTvw_Screen>(ScreenHead(2, 1) + ScreenWindow(1) + ScreenWindow(2) + ScreenWindow(3));
    RoundTrips<S_MTvw_Screen>(ScreenHead(0, 0));

    S_MTvw_Screen negative;
    ASSERT_TRUE(Decode(negative, ScreenHead(-128, -1) + ScreenWindow(1)));
    EXPECT_EQ(Encode(negative), ScreenHead(-128, -1)) << "a negative count announces nothing";
}

TEST_F(Records, TheLogShowsEveryFieldWhereTheHostPutsIt)
{
    const std::string window = "\n**************S_Create_Cavans_WindowInfo nID:9 nXPos:10 nYpos:20 nWidth:30 "
                               "nHeight:40 abs_x:1 abs_y:2 abs_w:3 abs_h:4 nMode:1 layId:5 zoomWndIndex:-6\n";
    const std::string subWindow = "\n**************S_Cavans_Sub_WindowInfo nIndex:0 nOsdid:100\n";
    EXPECT_EQ(
        Dumped<S_MTvw_Create_CavansWindow>(Command(1) + Window(9, 1)),
        (Texts{"\n**************S_MTvw_Create_CavansWindow guidWall:{01234567-89AB-CDEF-0102-030405060708} "
               "guidPlan:{00000001-0002-0003-0000-000000000000} listCount:1\n",
               "canvas window list \n", window, "sub window list \n", subWindow}));
    EXPECT_EQ(
        Dumped<S_MTvw_Modyfy_CavansWindow>(Command(1) + Bytes(1, -10, 2, 3, 4)).back(),
        "\n**************S_Roar_CanvasWindow_Item nID:1 nPositionX:-10 nPositionY:2 nWidth:3 nHeight:4\n");
    EXPECT_EQ(
        Dumped<S_MTvw_Canvas_Item_V2>(CanvasHead(1, 1) + LogicScreen(3) + Window(9, 1)),
        (Texts{"\n**************S_MTvw_Canvas_Item nOffetX:-1 nOffetY:-2 nWidth:3\t\t\t\t  nHeight:4 nRow:9 "
               "_nCol:10 nLogicScreenNum:1\n",
               "logic screen list \n",
               "\n**************S_Decoder_LogicScreen_Item nID:3 nOffetX:-1 nOffetY:-2 nWidth:1920 "
               "nHeight:1080\n",
               "canvas window list \n", window, "sub window list \n", subWindow}));
    const auto texts = Dumped<S_MTvw_Screen>(ScreenHead(1, 1) + ScreenWindow(4) + ScreenWindow(5));
    const std::string corners = " SX1=0.500000 SY1:1.500000 SX2:2.500000 SY2:3.500000 ";
    EXPECT_EQ(texts,
              (Texts{"\n**************S_MTvw_Screen id:7" + corners + "zoom:1 state:255 wndcnt:1 pipCnt:1 ",
                     "window list \n", "\n**************S_MTvw_Wnd_Item id:4" + corners, "pip window list \n",
                     "\n**************S_MTvw_Wnd_Item id:5" + corners}));

    fake_host::Reset();
    DumpText(S_MTvw_Screen::SITE, "%s", std::string(5000, 'x').c_str());
    EXPECT_EQ(fake_host::Logs().front().text.size(), 4095u);

    S_MTvw_Top_Canvas_Item top{};
    EXPECT_FALSE(ReadImage(Command(77).data(), 35, top));
    EXPECT_EQ(top._id, 0u);
    EXPECT_TRUE(ReadImage(Command(77).data(), 36, top));
    EXPECT_EQ(top._id, 77u);
}

TEST_F(Records, TheLogShowsWhatListsHoldBehindTheirHead)
{
    const GUID guid{1, 2, 3, {}};
    const std::string wall = "{00000001-0002-0003-0000-000000000000}";
    const auto line = [](const std::string& text) { return "\n**************" + text + "\n"; };
    EXPECT_EQ(Dumped<S_Playback_Ctrl_Items_V2>(
                  Bytes(int16_t{1}, int16_t{-1}, int16_t{1}, int16_t{4}, int16_t{5}, int16_t{-6})),
              (Texts{line("S_Playback_Ctrl_Items_V2 cavNum:1"), "window list \n",
                     line("S_Playback_Ctrl_Cavs id:65535 wndNum:1"), "sub window list \n",
                     line("S_Playback_Ctrl_Subwnd nIndex:4 nPbCtrlType:5 nPbCtrlVal:65530")}));
    EXPECT_EQ(Dumped<S_MTvw_Get_Audio_Config>(Bytes(guid, guid, 1, -3, 1, 4, -5)),
              (Texts{line("S_MTvw_Get_Audio_Config nwallGuid:" + wall + " DecGuid:" + wall + " cavCnt:1"),
                     "window list \n", line("S_MTvw_Get_AuCfg_Cav id:-3 subCnt:1"), "sub window list \n",
                     line("S_MTvw_Get_AuCfg_Subwnd index:4 channelId:-5")}));
    EXPECT_EQ(
        Dumped<S_MTvw_Wall_Start_Chl_GrPolling>(Bytes(guid, 1, -3, 1, 4, -1)),
        (Texts{line("S_MTvw_Wall_Start_Chl_GrPolling guidwall:" + wall + " numgrpoll:1"), "window list \n",
               line("S_MTvw_Wall_Chl_GrPolling_Winitem id:-3 subitemSize:1"), "sub window list \n",
               line("S_MTvw_Wall_Chl_GrPolling_Subitem index:4 channelgroup:4294967295")}));
    EXPECT_EQ(Dumped<S_MTvw_Wall_Delete_Channel_Group>(Bytes(guid, 1, -7)),
              (Texts{line("S_MTvw_Wall_Delete_Channel_Group guidwall:" + wall + " numchgroup:1"),
                     "channel group list \n", line("S_MTvw_Wall_Del_Ch_Group_item id:-7")}));
    EXPECT_EQ(Dumped<S_MTvw_Wall_Get_ChGroup_info>(Bytes(1, guid, -7, -1, 9) + std::string(256, 'n') + "1,2" +
                                                   std::string(13, '\0')),
              (Texts{line("S_MTvw_Wall_Get_ChGroup_info numchgroup:1"), "channel group list \n",
                     line("S_MTvw_Wall_Channel_Group_Info guidwall:" + wall +
                          " nid:-7 channelnum:4294967295 interval:9 name:" + std::string(256, 'n') +
                          " td_channellist:1,2")}))
        << "fields without a terminator end with their size";
    EXPECT_EQ(Dumped<S_MTvw_Wall_Get_ChGroup>(Bytes(guid, -7)),
              Texts{line("S_MTvw_Wall_Get_ChGroup guidwall:" + wall + " id:-7")});
}

TEST_F(Records, ABadItemEndsTheListAndTheItemsBeforeItStay)
{
    const std::string bytes = Command(2) + Window(1, 1) + Window(2, 9);
    S_MTvw_Create_CavansWindow create;
    EXPECT_FALSE(Decode(create, bytes.substr(0, bytes.size() - 1)));
    ASSERT_EQ(create._listCanvas.size(), 1u);
    EXPECT_EQ(create._listCanvas.front()->_nID, 1u);

    S_MTvw_Canvas_Item_V2 canvas;
    EXPECT_FALSE(Decode(canvas, CanvasHead(1, 2) + LogicScreen(3)));
    EXPECT_TRUE(canvas._logicScreenList.empty());
    EXPECT_EQ(canvas._nRow, 9);

    for (const uint32_t count : {3u, 0x40000000u, 0x33333334u, 0xFFFFFFFFu}) { // some wrap around in 32 bits
        S_MTvw_Del_CavansWindow del;
        EXPECT_FALSE(Decode(del, Command(count) + Bytes(1, 2)));
        EXPECT_TRUE(del._listDelCanvas.empty());
        S_MTvw_Modyfy_CavansWindow modify;
        EXPECT_FALSE(Decode(modify, Command(count) + Bytes(1, 2, 3, 4, 5)));
        EXPECT_TRUE(modify._listModfyCanvas.empty());
    }
}

TEST_F(Records, VerifyReportsAndMendsEachCountThatDisagrees)
{
    S_MTvw_Canvas_Item_V2 canvas;
    ASSERT_TRUE(Decode(canvas, CanvasHead(2, 0) + Window(1, 2) + Window(2, 0)));
    canvas.VerifyData();
    EXPECT_TRUE(fake_host::Logs().empty());
    canvas._nCanvasNum = 9;
    canvas._canvasList.back()->_nMode = 1;
    EXPECT_EQ(Encode(canvas).substr(20, 2), Bytes(uint16_t{9})) << "the count travels as it stands";
    canvas.VerifyData();
    EXPECT_EQ(Encode(canvas), CanvasHead(2, 0) + Window(1, 2) + Window(2, 0));
    EXPECT_EQ(fake_host::CountAsserts("MonitorTvwComm", S_MTvw_Canvas_Item_V2::SITE.nLine), 1);
    EXPECT_EQ(fake_host::CountAsserts("DecodeComm", S_Create_Cavans_WindowInfo::SITE.nLine), 1);
}

TEST_F(Records, DataTypesAreClassified)
{
    const std::set<uint32_t> parted{1, 4, 6, 7, 13, 15, 16, 24, 26, 36, 40, 64, 1024, 1025, 1026, 1027, 1282};
    const std::set<uint32_t> refreshed{1,  4,  6,  7,  8,  36, 37, 38, 41, 45,  46,
                                       47, 49, 50, 51, 54, 55, 56, 62, 64, 1309};
    for (uint32_t type = 0; type < 2000; ++type) {
        EXPECT_EQ(IsPodType(static_cast<E_MTVW_TYPE>(type)), !parted.contains(type)) << type;
        EXPECT_EQ(IsNeedNotifyFresh(type), refreshed.contains(type) || (type >= 10 && type <= 33)) << type;
    }
}

TEST_F(Records, FilesAreReadAndWrittenWhole)
{
    const std::string folder = std::filesystem::temp_directory_path();
    const std::string path = folder + "/records_test." + std::to_string(getpid());
    std::vector<BYTE> bytes{0, 1, 2, 255};
    const std::vector<BYTE> written = bytes;
    uint32_t length = 0;
    EXPECT_TRUE(WriteFile(path, bytes.data(), 4, O_WRONLY | O_CREAT));
    EXPECT_FALSE(WriteFile(path, bytes.data(), 4, O_RDONLY));
    EXPECT_FALSE(WriteFile("", bytes.data(), 4, O_WRONLY | O_CREAT));
    EXPECT_FALSE(WriteFile(path, nullptr, 4, O_WRONLY | O_TRUNC)); // opens nothing
    EXPECT_TRUE(ReadFile(path, bytes, length, O_RDONLY));
    EXPECT_EQ(bytes, written);
    EXPECT_EQ(length, 4u);
    std::filesystem::resize_file(path, uint64_t{1} << 40); // sparse, larger than a 32-bit length
    for (const std::string& bad : {std::string(), folder, path, path + ".none"}) {
        EXPECT_FALSE(ReadFile(bad, bytes, length, O_RDONLY)) << bad;
        EXPECT_EQ(bytes.size() + length, 0u);
    }
    std::filesystem::remove(path);
}
