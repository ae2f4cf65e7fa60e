#include "CommandSamples.h"

#include "DecoderKeys.h"
#include "LinkTexts.h"

namespace {

constexpr unsigned int GET = 0x50000;
constexpr unsigned int SAVE = 0x50001;
constexpr unsigned int OPTION = 0x50002;

// The GUIDs of wall and plan, or wall and decoder.
Bytes TwoGuids() { return Bytes().Text(std::string(16, 'W')).Text(std::string(16, 'P')); }

std::string Layout() { return Bytes().U32(1).U32(2).U32(1).U32(7).Text(Field("left", 256)).U32(0).U32(1); }

std::string Windows()
{
    Bytes window = TwoGuids().U32(1).U32(1).U32(0).U32(0).U32(640).U32(480).Zeros(8).U32(2).Zeros(8);
    return window.U32(0).U32(10).U32(1).U32(11);
}

std::string MediaOfOneSubWindow()
{
    Bytes media = Bytes().U32(1).U32(3).U32(1).U32(0).U32(1).U32(5).Zeros(16).U32(1).U32(2).U32(554);
    return media.Zeros(32).Text(Field("192.0.2.1", 32)).Text(Field("camera", 256)).Text(Field("secret", 256));
}

std::string WholeWall()
{
    Bytes wall = Bytes().U32(1).U16(1).U16(0).U16(1).U16(0).U16(0).U16(640).U16(480).U32(1);
    wall.U16(0).U16(10).U16(1).U16(6).U16(554).Zeros(14).Zeros(16);
    return wall.Text(Field("192.0.2.1", 32)).Text(Field("camera", 256)).Text(Field("secret", 256)).U32(5);
}

std::string Group()
{
    Bytes group = Bytes().Zeros(16).U32(4).U32(2).U32(30);
    return group.Text(Field("entrances", 256)).Text(Field("1,2", 16));
}

std::string Sound() { return TwoGuids().U32(1).U32(3).U32(1).U32(0).U32(5); }

std::vector<CommandSample> MakeSamples()
{
    const std::string keys = "<pubkey1>" + DecoderKeys().publicKey + "</pubkey1><pubkey2>" +
                             DecoderKeys().publicKey + "</pubkey2>";
    const std::string screens =
        "<row>1</row><col>2</col><td_channellist><item><id>7</id><name>left &lt;1&gt;</name>"
        "<coordinate><xpos>0</xpos><ypos>1</ypos></coordinate></item></td_channellist>";
    const std::string sounds = "<td_windowlist><item><id>3</id><td_subwindowlist><item><index>0</index>"
                               "<channelid>5</channelid></item></td_subwindowlist></item></td_windowlist>";
    const std::string groups =
        "<channelgrouplist><item><id>4</id><name>entrances</name><interval>30</interval>"
        "<td_channellist>1,2</td_channellist></item></channelgrouplist>";
    return {
        {"ProcDoOptionCmd", 0x101, LoginPayload("admin", "secret"), keys},
        {"SetWallLayout", 0x50005, Layout(), ""},
        {"GetWallLayout", 0x50006, "", screens},
        {"BindWall", 0x50007, Layout(), ""},
        {"unBindWall", 0x50008, Layout(), ""},
        {"GetBasicCfg", GET, Option(0x50002, ""), "<identidy>3</identidy><devicename>wall</devicename>"},
        {"GetDecSystemInfo", GET, Option(0x5000A, ""), "<name>wall</name><model>-1</model>"},
        {"GetChannelGroup", GET, Option(0x6000D, Bytes().Zeros(16).U32(4)), groups},
        {"GetWindowConfig", GET, Option(0x60013, ""), "<enableborder>1</enableborder>"},
        {"GetAudioConfig", GET, Option(0x60016, TwoGuids().U32(0)), sounds},
        {"doSetCanvasSplit", SAVE, Option(0x5000E, Windows()), ""},
        {"DrawBorder", SAVE, Option(0x60003, Bytes().U32(1).U16(3).U32(1).U16(0).U16(1)), ""},
        {"SetChannelGroup", SAVE, Option(0x6000C, Group()), ""},
        {"SetWallInfo", SAVE, Option(0x60010, WholeWall()), ""},
        {"doClearWall", SAVE, Option(0x60011, ""), ""},
        {"SetWindowConfig", SAVE, Option(0x60012, TwoGuids().U16(1).U16(0)), ""},
        {"ProcLoginOutCmd", OPTION, Option(0x50000, ""), ""},
        {"PlanWndZoom", OPTION, Option(0x50014, TwoGuids().U32(3).U16(1).U16(0)), ""},
        {"PlayBackCtrl", OPTION, Option(0x5001D, Bytes().U16(1).U16(3).U16(1).U16(0).U16(2).U16(4)), ""},
        {"PlayMedia", OPTION, Option(0x60004, MediaOfOneSubWindow()), ""},
        {"StopPlayMedia", OPTION, Option(0x60005, MediaOfOneSubWindow()), ""},
        {"CreateCanvas", OPTION, Option(0x60006, Windows()), ""},
        {"DelCanvas", OPTION, Option(0x60007, TwoGuids().U32(1).U32(3)), ""},
        {"ChangeCanvas", OPTION, Option(0x60008, TwoGuids().U32(1).U32(3).Zeros(8).U32(9).U32(9)), ""},
        {"TopCanvas", OPTION, Option(0x60009, TwoGuids().U32(3)), ""},
        {"AddChannelGroup", OPTION, Option(0x6000A, Group()), ""},
        {"DeleteChannelGroup", OPTION, Option(0x6000B, Bytes().Zeros(16).U32(1).U32(4)), ""},
        {"StartChlGroupPolling", OPTION,
         Option(0x6000E, Bytes().Zeros(16).U32(1).U32(3).U32(1).U32(0).U32(4)), ""},
        {"StopChlGroupPolling", OPTION, Option(0x6000F, MediaOfOneSubWindow()), ""},
        {"PlayAudio", OPTION, Option(0x60014, Sound()), ""},
        {"StopAudio", OPTION, Option(0x60015, Sound()), ""},
    };
}

} // namespace

const std::vector<CommandSample>& CommandSamples()
{
    static const std::vector<CommandSample> samples = MakeSamples();
    return samples;
}
