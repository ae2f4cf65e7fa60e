#include <bit>
#include <tuple>

#include "CommandSamples.h"
#include "DecodeComm.h"
#include "Encoding/FieldText.h"
#include "MonitorTvwComm.h"
#include "NetProtocolProc.h"
#include "PluginExports.h"
#include "RecordChecks.h"
#include "TvwallProtocol.h"

using namespace ORVA2_CLIENT_TVW;
using namespace ORVA2_DECODER_TVW;

namespace {

// The parts of records, and what the log says of them.

const std::string kNext = "\n**************"; // before the name of each record
const std::string kGuidW = "{57575757-5757-5757-5757-575757575757}";
const std::string kGuidP = "{50505050-5050-5050-5050-505050505050}";
const std::string kWall(16, 'W');
const std::string kFull(256, 'n'); // a field without a terminator ends with its size

std::string Window(unsigned long id, unsigned long subWindows)
{
    Bytes window = Bytes().U32(id).U32(10).U32(20).U32(30).U32(40).U16(1).U16(2).U16(3).U16(65535);
    window.U32(subWindows).U32(5).U32(-6UL);
    for (unsigned long i = 0; i < subWindows; ++i) {
        window.U32(i).U32(100 + i);
    }
    return window;
}

std::string WindowText(unsigned long id, unsigned long subWindows)
{
    std::string text = kNext + "S_Create_Cavans_WindowInfo nID:" + std::to_string(id) +
                       " nXPos:10 nYpos:20 nWidth:30 nHeight:40 abs_x:1 abs_y:2 abs_w:3 abs_h:65535 nMode:" +
                       std::to_string(subWindows) + " layId:5 zoomWndIndex:-6\nsub window list \n";
    for (unsigned long i = 0; i < subWindows; ++i) {
        text += kNext + "S_Cavans_Sub_WindowInfo nIndex:" + std::to_string(i) +
                " nOsdid:" + std::to_string(100 + i) + "\n";
    }
    return text;
}

std::string CanvasHead(unsigned int windows, unsigned long screens)
{
    Bytes head = Bytes().U16(-1U).U16(-2U).U16(3).U16(4).U16(-5U).U16(-6U).U16(-7U).U16(-8U).U16(9).U16(10);
    return head.U16(windows).U32(screens);
}

std::string LogicScreen(unsigned long id) { return Bytes().U32(id).U16(-1U).U16(-2U).U16(1920).U16(1080); }

std::string ScreenWindow(unsigned long id)
{
    Bytes window = Bytes().U32(id);
    for (const float corner : {0.5F, 1.5F, 2.5F, 3.5F}) {
        window.U32(std::bit_cast<uint32_t>(corner));
    }
    return window.Text("twenty bytes of more");
}
const std::string kCorners = " SX1=0.500000 SY1:1.500000 SX2:2.500000 SY2:3.500000 ";

std::string Media(const std::string& gap) { return StreamRecord(kWall, -5UL, "user", "password", gap); }
const std::string kMediaText =
    kNext + "S_MTvw_Wall_Media_info channelIdInt:-5 channelid:" + kGuidW +
    " type:-1 reqmode:-2 port:-3 streamtype:-4 recordmask:2147483648 source:-6 "
    "begintime:18446744073709551615 endtime:4294967303 addr:10.0.0.<1> fills it to the end!!\n";

std::string Group(unsigned long id, const std::string& name)
{
    return GroupRecord(kWall, id, -1UL, 0x80000000, name, "1,2");
}

class Records : public testing::Test {
protected:
    Records()
    {
        NET_DEV_DECODERDEVSDK_Initial(); // lets records write to the host's log
        NET_DEV_DECODERDEVSDK_Quit();    // which changes nothing
        delete fake_host::Get().created;
        fake_host::Reset();
    }
};

template <class Record>
void Check(const std::string& bytes, const std::string& dumped)
{
    RoundTrips<Record>(bytes);
    EXPECT_EQ(Dumped<Record>(bytes), dumped);
}

} // namespace

// Each field has a value of its own, so none can stand in another's place, on the wire or in the log.
TEST_F(Records, KeepEveryByteRefuseEveryShorterPayloadAndAreLoggedAsTheyAre)
{
    const auto command = [](const std::string& name, unsigned long count) {
        return kNext + name + " guidWall:" + kGuidW + " guidPlan:" + kGuidP +
               " listCount:" + std::to_string(count) + "\n";
    };
    Check<S_MTvw_Create_CavansWindow>(Guids().U32(3).Text(Window(9, 4) + Window(8, 0) + Window(7, 1)),
                                      command("S_MTvw_Create_CavansWindow", 3) + "canvas window list \n" +
                                          WindowText(9, 4) + WindowText(8, 0) + WindowText(7, 1));
    S_MTvw_Wall_Basic_Config basic; // its name takes the rest
    const std::string head = Bytes().Text(std::string(16, 'g')).U32(-4UL).U32(-1UL);
    const std::string whole = head + std::string("n\0me", 4) + std::string(70000, '!');
    for (size_t n = 0; n <= head.size() + 4; ++n) {
        EXPECT_EQ(Decode(basic, whole.substr(0, n)), n >= head.size());
        EXPECT_EQ(basic._devicename.size(), n < head.size() ? 0 : n - head.size());
    }
    EXPECT_TRUE(Decode(basic, whole) && Encode(basic) == whole);
    basic.ClearData();
    EXPECT_EQ(Encode(basic) + Encode(S_MTvw_Wall_Basic_Config()), std::string(48, '\0'));
    EXPECT_EQ(Dumped<S_MTvw_Wall_Basic_Config>(head + "name"),
              kNext + "S_MTvw_Wall_Basic_Config guidwall:{67676767-6767-6767-6767-676767676767}" +
                  " identidy:4294967292 runmode:4294967295 devicename:name\n");
    Check<S_MTvw_Del_CavansWindow>(Guids().U32(2).U32(5).U32(-1UL),
                                   command("S_MTvw_Del_CavansWindow", 2) + "delete canvas window list \n" +
                                       kNext + "S_Delete_Canvas_Window_Item nID:5\n" + kNext +
                                       "S_Delete_Canvas_Window_Item nID:4294967295\n");
    Check<S_MTvw_Modyfy_CavansWindow>(
        Guids().U32(2).U32(-1UL).U32(-10UL).U32(2).U32(-3UL).U32(4).U32(2).U32(5).U32(-6UL).U32(7).U32(8),
        command("S_MTvw_Modyfy_CavansWindow", 2) + "modify canvas window list \n" + kNext +
            "S_Roar_CanvasWindow_Item nID:-1 nPositionX:-10 nPositionY:2 nWidth:-3 nHeight:4\n" + kNext +
            "S_Roar_CanvasWindow_Item nID:2 nPositionX:5 nPositionY:-6 nWidth:7 nHeight:8\n");
    const std::string canvas = kNext + "S_MTvw_Canvas_Item nOffetX:-1 nOffetY:-2 nWidth:3\t\t\t\t  nHeight:4 "
                                       "nRow:9 _nCol:10 nLogicScreenNum:";
    Check<S_MTvw_Canvas_Item_V2>(CanvasHead(0, 0), canvas + "0\nlogic screen list \ncanvas window list \n");
    Check<S_MTvw_Canvas_Item_V2>(
        CanvasHead(2, 1) + LogicScreen(3) + Window(1, 2) + Window(2, 0),
        canvas + "1\nlogic screen list \n" + kNext +
            "S_Decoder_LogicScreen_Item_V2 nID:3 nOffetX:-1 nOffetY:-2 nWidth:1920 nHeight:1080\n"
            "canvas window list \n" +
            WindowText(1, 2) + WindowText(2, 0));
    Check<S_MTvw_Screen>(
        ScreenWindow(-7UL) + "\1\xFF\2\1" + ScreenWindow(-4UL) + ScreenWindow(5) + ScreenWindow(6),
        kNext + "S_MTvw_Screen id:-7" + kCorners + "zoom:1 state:255 wndcnt:2 pipCnt:1 " + "window list \n" +
            kNext + "S_MTvw_Wnd_Item id:-4" + kCorners + kNext + "S_MTvw_Wnd_Item id:5" + kCorners +
            "pip window list \n" + kNext + "S_MTvw_Wnd_Item id:6" + kCorners);
    const std::string layout = Bytes().U32(-3UL).U32(-4UL).U32(2).Text(
        ScreenRecord(-1UL, kFull, 1, 0x80000000) + ScreenRecord(8, "", -2UL, 2));
    RoundTrips<S_MTvw_Wall_Layout>(layout, Bytes().Zeros(8).U32(2)); // the count stays, as with the host
    RoundTrips<S_MTvw_Wall_WallLayout_Item>(ScreenRecord(5, kFull, 6, 7), ScreenRecord(5, "", 0, 0));
    EXPECT_EQ(Dumped<S_MTvw_Wall_Layout>(layout),
              kNext + "S_MTvw_Wall_Layout row:4294967293 col:4294967292 numchannel:2\nchannel list \n" +
                  kNext + "S_MTvw_Wall_WallLayout_Item id:4294967295 name:" + kFull +
                  " xPos:1 yPos:2147483648\n" + kNext +
                  "S_MTvw_Wall_WallLayout_Item id:8 name: xPos:4294967294 yPos:2\n");
    Check<S_MTvw_Wall_Media_info>(Media(""), kMediaText);
    S_MTvw_Wall_Media_info media;
    EXPECT_TRUE(Decode(media, Media("")) && FieldText(media._user) == "user");
    media._gap = 7; // is no field
    media.ClearData();
    EXPECT_EQ(media._gap, 7U);
    Check<S_MTvw_Wall_Media>(
        Bytes().U32(2).U32(-8UL).U32(1).U32(-9UL).U32(1).Text(Media("gap!")).U32(3).U32(0),
        kNext + "S_MTvw_Wall_Media numwind:2\nwindow list \n" + kNext +
            "S_MTvw_Wall_Media_Wind id:-8 numwind:1\nsub window list \n" + kNext +
            "S_MTvw_Wall_Media_Sub_Wind index:-9 numinfo:1\nmedia list \n" + kMediaText + kNext +
            "S_MTvw_Wall_Media_Wind id:3 numwind:0\nsub window list \n");
    Check<S_MTvw_Wall_Set_wall_V2>(
        Bytes().U32(1).Text(WallWindowRecord(8, 1)).Text(WallStreamRecord(kWall, -12UL, 6)),
        kNext + "S_MTvw_Wall_Set_wall_V2 numwind:1\nwindow list \n" + kNext +
            "S_MTvw_Wall_Set_wall_Wind id:8 layerindx:65532 mode:65533 xPos:40000 yPos:50005 width:65535 "
            "height:50007 "
            "numwind:1\nsub window list \n" +
            kNext +
            "S_MTvw_Wall_Set_wall_Subwin index:65535 osdid:65527 type:60000 reqmode:6 port:50000 "
            "begintime:4294967295 endtime:4294967294 streamType:4294967288 channelid:" +
            kGuidW + " addr:10.0.0.<1> fills it to the end!! channelIdInt:-12\n");
    const auto groupText = [](const std::string& id, const std::string& name) {
        return kNext + "S_MTvw_Wall_Channel_Group_Info guidwall:" + kGuidW + " nid:" + id +
               " channelnum:4294967295 interval:2147483648 name:" + name + " td_channellist:1,2\n";
    };
    Check<S_MTvw_Wall_Get_ChGroup_info>(Bytes().U32(2).Text(Group(-7UL, kFull) + Group(8, "n")),
                                        kNext + "S_MTvw_Wall_Get_ChGroup_info numchgroup:2\n" +
                                            "channel group list \n" + groupText("-7", kFull) +
                                            groupText("8", "n"));
    Check<S_MTvw_Wall_Delete_Channel_Group>(Bytes().Text(kWall).U32(1).U32(-7UL),
                                            kNext + "S_MTvw_Wall_Delete_Channel_Group guidwall:" + kGuidW +
                                                " numchgroup:1\nchannel group list \n" + kNext +
                                                "S_MTvw_Wall_Del_Ch_Group_item id:-7\n");
    Check<S_MTvw_Wall_Start_Chl_GrPolling>(
        Bytes().Text(kWall).U32(2).U32(-3UL).U32(1).U32(4).U32(-1UL).U32(5).U32(0),
        kNext + "S_MTvw_Wall_Start_Chl_GrPolling guidwall:" + kGuidW + " numgrpoll:2\nwindow list \n" +
            kNext + "S_MTvw_Wall_Chl_GrPolling_Winitem id:-3 subitemSize:1\nsub window list \n" + kNext +
            "S_MTvw_Wall_Chl_GrPolling_Subitem index:4 channelgroup:4294967295\n" + kNext +
            "S_MTvw_Wall_Chl_GrPolling_Winitem id:5 subitemSize:0\nsub window list \n");
    Check<S_MTvw_Wall_Get_ChGroup>(Bytes().Text(kWall).U32(-7UL),
                                   kNext + "S_MTvw_Wall_Get_ChGroup guidwall:" + kGuidW + " id:-7\n");
    Check<S_MTvw_Get_Audio_Config>(Guids().U32(2).U32(-3UL).U32(1).U32(4).U32(-5UL).U32(6).U32(0),
                                   kNext + "S_MTvw_Get_Audio_Config nwallGuid:" + kGuidW +
                                       " DecGuid:" + kGuidP + " cavCnt:2\nwindow list \n" + kNext +
                                       "S_MTvw_Get_AuCfg_Cav id:-3 subCnt:1\nsub window list \n" + kNext +
                                       "S_MTvw_Get_AuCfg_Subwnd index:4 channelId:-5\n" + kNext +
                                       "S_MTvw_Get_AuCfg_Cav id:6 subCnt:0\nsub window list \n");
    Check<S_Decoder_Draw_Border>(Bytes().U32(2).U16(-1U).U32(2).U16(1).U16(-2U).U16(-3U).U16(4).U16(5).U32(0),
                                 kNext + "S_Decoder_Draw_Border windCount:2\nwindow list \n" + kNext +
                                     "S_Decoder_Draw_Border_Wind id:-1 subwindCount:2\nsub window list \n" +
                                     kNext + "S_Decoder_Draw_Border_Subwind index:1 drawborder:-2\n" + kNext +
                                     "S_Decoder_Draw_Border_Subwind index:-3 drawborder:4\n" + kNext +
                                     "S_Decoder_Draw_Border_Wind id:5 subwindCount:0\nsub window list \n");
    const std::string playback = Bytes().U16(-1U).U16(1).U16(4).U16(5).U16(-6U);
    EXPECT_EQ(Dumped<S_Playback_Ctrl_Items_V2>(Bytes().U16(1).Text(playback)),
              kNext + "S_Playback_Ctrl_Items_V2 cavNum:1\nwindow list \n" + kNext +
                  "S_Playback_Ctrl_Cavs id:65535 wndNum:1\nsub window list \n" + kNext +
                  "S_Playback_Ctrl_Subwnd nIndex:4 nPbCtrlType:5 nPbCtrlVal:65530\n");

    const auto checkLong = [](auto record, const std::string& first, const std::string& item, size_t count) {
        const std::string bytes = first + Repeat(item, count);
        EXPECT_TRUE(Decode(record, bytes + item) && Encode(record) == bytes) << typeid(record).name();
    };
    checkLong(S_MTvw_Del_CavansWindow(), Guids().U32(70000), "item", 70000);
    checkLong(S_MTvw_Wall_Media_Sub_Wind(), Bytes().U32(1).U32(300), Media("gap!"), 300);
    checkLong(S_Playback_Ctrl_Items_V2(), Bytes().U16(300), Bytes().U16(1).U16(0), 300);
    checkLong(S_Decoder_Draw_Border(), Bytes().U32(300), Bytes().U16(1).U32(0), 300);

    fake_host::Reset();
    DumpText(S_MTvw_Screen::SITE, "%s", std::string(5000, 'x').c_str());
    EXPECT_EQ(fake_host::Logs().front().text, std::string(4095, 'x'));
    char room[5];
    CRecordWriter writer(room, sizeof(room));
    writer.Plain(uint32_t{1}, uint32_t{2}, uint8_t{3});
    EXPECT_EQ(writer.GetLength(), 4U) << "what does not fit is left out, and all after it";
    char field[] = {'o', 'l', 'd', '!'};
    EXPECT_FALSE(ReadImage(nullptr, sizeof(field), field));
    SetFieldText(field, "x");
    EXPECT_EQ(std::string(field, 4), std::string("x\0\0\0", 4));
}

// They travel as they lie in memory.
template <class... Image>
void CheckImages()
{
    static_assert(((std::is_trivially_copyable_v<Image> && std::is_standard_layout_v<Image>)&&...));
    const auto check = []<class Any>(const Any*) {
        alignas(Any) char memory[sizeof(Any)];
        memset(memory, 'x', sizeof(memory));
        new (memory) Any;
        EXPECT_EQ(std::string(memory, sizeof(memory)), std::string(sizeof(memory), '\0'))
            << typeid(Any).name();
    };
    (check(static_cast<const Image*>(nullptr)), ...);
}

TEST_F(Records, ImagesBeginWithZeros)
{
    CheckImages<S_GuidUnt, S_GuidUntStr, S_MTvw_Top_Canvas_Item, S_MTvw_Wnd_Item, S_MTvw_PlanWnd_Zoom_v2,
                S_MTvw_Wall_Set_WindCfg_V2, S_MTvw_Wall_RC_WallLayout, S_MTvw_Wall_WallLayout_Coor,
                S_MTvw_Wall_Set_wall_Rect, S_MTvw_Wall_Set_wall_Subwin, S_Decoder_Draw_Border_Subwind,
                S_Decoder_Baseinfo_Item, ORVA_NET_PROTOCOL::_kest_tvwall_opt_info,
                ORVA_NET_PROTOCOL::_kest_net_reply, ORVA_NET_PROTOCOL::_kest_net_login_info,
                ORVA_NET_PROTOCOL::_net_login_success_info, S_Decoder_Opt_Result, S_MTvw_Wall_Media_info>();
}

TEST_F(Records, CountsThatCannotBeCreateNothing)
{
    RefusesCounts<S_MTvw_Create_CavansWindow>(Guids(), Window(1, 0) + Window(2, 0) + Window(3, 1));
    RefusesCounts<S_MTvw_Modyfy_CavansWindow>(Guids(), std::string(79, 'x'));
    RefusesCounts<S_MTvw_Wall_Media, S_MTvw_Wall_Set_wall_V2>("", Bytes().U32(7).U32(0));
    RefusesCounts<S_MTvw_Wall_Media_Wind>("id..", Bytes().U32(7).U32(0));
    RefusesCounts<S_MTvw_Wall_Media_Sub_Wind>("id..", Media("gap!"));
    RefusesCounts<S_MTvw_Get_Audio_Config, S_MTvw_Del_CavansWindow>(Guids(), std::string(15, '\0'));
    RefusesCounts<S_MTvw_Get_AuCfg_Cav, S_MTvw_Wall_Chl_GrPolling_Winitem>("id..", std::string(31, '\0'));
    RefusesCounts<S_MTvw_Wall_Delete_Channel_Group, S_MTvw_Wall_Start_Chl_GrPolling>(kWall, "12 or 8 bytes");
    RefusesCounts<S_MTvw_Wall_Set_wall_Wind>(std::string(14, 'x'), "x");
    RefusesCounts<S_MTvw_Wall_Layout>("row.col.", "x");
    RefusesCounts<S_MTvw_Canvas_Item_V2>(CanvasHead(0, 0).substr(0, 22), LogicScreen(3));

    S_MTvw_Get_Audio_Config audio; // the head stands or falls with its own count
    EXPECT_FALSE(Decode(audio, Guids().U32(3).Zeros(16)));
    EXPECT_EQ(Encode(audio), std::string(36, '\0'));
    EXPECT_FALSE(Decode(audio, Guids().U32(1).U32(7).U32(2).Zeros(8)));
    EXPECT_EQ(Encode(audio), std::string(Guids().U32(1)));
    S_MTvw_Screen screen;
    ASSERT_TRUE(Decode(screen, ScreenWindow(7) + "\1\2\x80\xFF" + ScreenWindow(1)));
    EXPECT_EQ(Encode(screen), ScreenWindow(7) + "\1\2\x80\xFF") << "a negative count announces nothing";
    ASSERT_TRUE(Decode(screen, ScreenWindow(7) + "\1\2\1\1" + ScreenWindow(1) + ScreenWindow(2)));
    screen._nWndCnt = 0;
    EXPECT_EQ(Encode(screen).size(), 3 * ScreenWindow(7).size() + 4) << "all that the lists hold";
}

TEST_F(Records, ABadItemEndsTheListAndTheItemsBeforeItStay)
{
    const std::string one = Window(1, 1);
    S_MTvw_Create_CavansWindow create;
    EXPECT_FALSE(Decode(create, Guids().U32(2).Text(one + Window(2, 0).replace(28, 4, 4, '\xFF'))));
    EXPECT_FALSE(create.SetData(nullptr, 9) || create.SetData("x", 0)); // changes nothing
    EXPECT_EQ(Encode(create), std::string(Guids().U32(2).Text(one)));
    S_MTvw_Canvas_Item_V2 canvas;
    EXPECT_FALSE(Decode(canvas, CanvasHead(1, 2) + LogicScreen(3)));
    EXPECT_EQ(Encode(canvas), CanvasHead(1, 2));
    S_MTvw_Wall_Get_ChGroup question;
    EXPECT_FALSE(Decode(question, kWall + "\1\1\1"));
    EXPECT_EQ(Encode(question), kWall + std::string(4, '\0')) << "the wall stands without the id";
    EXPECT_FALSE(question.SetData(nullptr, 0));
    EXPECT_EQ(Encode(question), std::string(20, '\0')) << "emptied even without data";
    S_Playback_Ctrl_Items_V2 playback; // alone may end between two windows
    const std::string cavs = Bytes().U16(2).U16(3).U16(0);
    EXPECT_TRUE(Decode(playback, cavs));
    EXPECT_FALSE(Decode(playback, cavs + "\4"));
    EXPECT_EQ(playback._nCavs.size(), 1U);
    S_Decoder_Draw_Border borders;
    borders.SetData("\2\0\0\0\2\0\0\0\0", 10);
    EXPECT_EQ(borders._windCount, 2U) << "as announced";
    borders.SetData(nullptr, 0);
    EXPECT_EQ(Encode(borders), std::string(4, '\0'));
    const auto window = std::make_shared<S_Decoder_Draw_Border_Wind>(); // one that stands there often
    window->_subwindlist.assign(65536, std::make_shared<S_Decoder_Draw_Border_Subwind>());
    borders._windlist.assign(16384, window);
    EXPECT_THROW(borders.Encode(), std::length_error) << "4 GiB and a little more";
}

TEST_F(Records, VerifyReportsAndMendsEachCountThatDisagrees)
{
    S_MTvw_Canvas_Item_V2 canvas;
    ASSERT_TRUE(Decode(canvas, CanvasHead(2, 0) + Window(1, 2) + Window(2, 0)));
    EXPECT_EQ(std::tuple(canvas._abs_x, canvas._abs_y, canvas._abs_w, canvas._abs_h),
              std::tuple(-5, -6, 65529, 65528)); // not in the log
    canvas.VerifyData();
    EXPECT_TRUE(fake_host::Logs().empty());
    canvas._nCanvasNum = 9;                 // too high
    canvas._canvasList.front()->_nMode = 1; // too low
    EXPECT_EQ(Encode(canvas).substr(20, 2), std::string("\x09\0", 2)) << "the count travels as it stands";
    canvas.VerifyData();
    EXPECT_EQ(Encode(canvas), CanvasHead(2, 0) + Window(1, 2) + Window(2, 0));
    EXPECT_EQ(fake_host::CountAsserts("MonitorTvwComm", S_MTvw_Canvas_Item_V2::SITE.nLine), 1);
    EXPECT_EQ(fake_host::CountAsserts("DecodeComm", S_Create_Cavans_WindowInfo::SITE.nLine), 1);
    SetRecordOutput(nullptr, nullptr); // until the next test
    canvas._nCanvasNum = 9;
    const auto logged = fake_host::Logs().size();
    canvas.Dump();
    canvas.VerifyData();
    EXPECT_EQ(fake_host::Logs().size(), logged);
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
