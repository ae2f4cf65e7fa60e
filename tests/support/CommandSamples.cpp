#include "CommandSamples.h"

#include <stdexcept>

#include "DecoderKeys.h"
#include "FakeCommand.h"
#include "LinkTexts.h"

namespace {

constexpr unsigned int kGet = 0x50000;
constexpr unsigned int kSave = 0x50001;
constexpr unsigned int kOption = 0x50002;
constexpr unsigned int kNoOption = CommandSample::kNoOption;
constexpr unsigned int kNoHead = CommandSample::kNoHead;

std::string Rect(long x, long y, long width, long height)
{
    return Elem("rect", Elem("xpos", x) + Elem("ypos", y) + Elem("width", width) + Elem("height", height));
}

// Two screens, of which the second one has no name.
std::string Layout()
{
    const std::string left = ScreenRecord(0xFFFFFFFF, "left", 1, 0x80000000);
    return Bytes().U32(0x80000003).U32(0xFFFFFFFF).U32(2).Text(left + ScreenRecord(8, "", -3UL, 2));
}

std::string Coordinate(long x, long y) { return Elem("coordinate", Elem("xpos", x) + Elem("ypos", y)); }

// One window that is split in two.
std::string Canvas()
{
    Bytes window = Guids().U32(1).U32(-3UL).U32(-10UL).U32(-11UL).U32(0xFFFFFFFF).U32(-13UL);
    window.U16(5).U16(6).U16(7).U16(8).U32(2).U32(9).U32(10);
    return window.U32(0).U32(-100UL).U32(-1UL).U32(101);
}

const std::string kCanvas = Windows(
    Item(Elem("id", 4294967293) + Rect(4294967286, 4294967285, 4294967295, 4294967283) + Elem("mode", 2) +
         Elem("td_subwindowlist", Item(Elem("index", 0) + Elem("osdid", 4294967196)) +
                                      Item(Elem("index", 4294967295) + Elem("osdid", 101)))));

std::string Switches(long border, long showID)
{
    return Elem("enableborder", border) + Elem("enableshowwinid", showID);
}

// The text that the host gets for them, with its terminating zero.
std::string SwitchesText(long border, long showID, const std::string& operation)
{
    const std::string values = Elem("errorcode", 0) + Switches(border, showID) + Elem(operation, 1);
    return Lines(Elem("response",
                      Elem("id", "{01234567-89AB-CDEF-1020-304050607080}") + Elem("baseInfo", values))) +
           '\0';
}

const std::string kAddress = "10.0.0.<1> fills it to the end!!"; // its field
const std::string kSentAddress = "10.0.0.&lt;1&gt; fills it to the end!!";

// One sub-window with one stream.
std::string Media()
{
    const std::string stream = StreamRecord(kGuidBytes, 5, kSourceUser, kSourcePassword);
    return Bytes().U32(1).U32(-8UL).U32(1).U32(-9UL).U32(1).Text(stream);
}

const std::string kWall(16, 'W'); // its GUID

// A group whose texts fill their fields.
const std::string kGroupName(256, 'n'), kChannels = "1,2,3,4,5 & <16>";
std::string Group() { return GroupRecord(kWall, -7UL, 0xFFFFFFFF, 0x80000000, kGroupName, kChannels); }

const std::string kGroup = Body(Elem(
    "channelgroup", Elem("id", -7) + Elem("name", kGroupName) + Elem("channelnum", 4294967295) +
                        Elem("interval", 2147483648) + Elem("td_channellist", "1,2,3,4,5 &amp; &lt;16&gt;")));

std::string Sound() { return Guids().U32(1).U32(-3UL).U32(1).U32(-6UL).U32(-5UL); }

std::vector<CommandSample> MakeSamples()
{
    const std::string keys =
        Elem("pubkey1", DecoderKeys().publicKey) + Elem("pubkey2", DecoderKeys().publicKey);
    const std::string node =
        Bytes().U32(0x01234567).U16(0x89AB).U16(0xCDEF).Text("\x10\x20\x30\x40\x50\x60\x70\x80");
    const std::string screens =
        Elem("row", 4294967291) + Elem("col", 4294967292) +
        Elem("td_channellist", Item(Elem("id", 4294967287) + Elem("name", "left &lt;1&gt;") +
                                    Coordinate(4294967294, 4294967290)));
    const std::string system = Elem("name", "wall") + Elem("model", -2000000001) + Elem("devicetype", "t") +
                               Elem("mac", "m") + Elem("softversion", "s") + Elem("builddate", "b") +
                               Elem("kernelversion", "k") + Elem("dataversion", "d");
    const std::string systemTexts =
        Field("t", 64) + Field("m", 64) + Field("s", 64) + Field("b", 64) + Field("k", 64) + Field("d", 64);
    const std::string groups =
        Elem("channelgrouplist", Item(Elem("id", -2000000004) + Elem("name", "entrances") +
                                      Elem("interval", 4294967266) + Elem("td_channellist", "1,2")));
    const std::string stream = StreamElements(Elem("channelid", kGuidText), kSourceUser, kSourcePassword);
    const std::string wall =
        Bytes().U32(1).Text(WallWindowRecord(8, 1)).Text(WallStreamRecord(kGuidBytes, 12, 6));
    return {
        {"ProcDoOptionCmd", 0x101, kNoOption, LoginPayload("admin", "secret"), "dooption dologin",
         Body(Elem("encryption", 1)), kNoHead, keys, Bytes().Text(node).U32(513).Zeros(112)},
        {"SetWallLayout", 0x50005, kNoOption, Layout(), "setwalllayout",
         Body(Elem("row", 2147483651) + Elem("col", 4294967295)), kNoHead, "", ""},
        {"GetWallLayout", 0x50006, kNoOption, "not read", "getwalllayout", kNoBody, kNoHead, screens,
         Bytes().U32(-5UL).U32(-4UL).U32(1).Text(ScreenRecord(4294967287, "left <1>", -2UL, -6UL))},
        {"BindWall", 0x50007, kNoOption, Layout(), "dobindwall",
         Body(Elem("td_channellist", Item(Elem("id", 4294967295) + Coordinate(1, 2147483648)) +
                                         Item(Elem("id", 8) + Coordinate(4294967293, 2)))),
         kNoHead, "", ""},
        {"unBindWall", 0x50008, kNoOption, Layout(), "dounbindwall",
         Body(Elem("td_channellist", Item(Coordinate(1, 2147483648)) + Item(Coordinate(4294967293, 2)))),
         kNoHead, "", ""},
        {"GetBasicCfg", kGet, 0x50002, "not read", "getbasicconfig", kNoBody, 0x50002,
         Elem("identidy", 4294967295) + Elem("runmode", 4294967294) + Elem("devicename", "wall"),
         Bytes().Zeros(16).U32(0xFFFFFFFF).U32(-2UL).Text("wall")},
        {"GetDecSystemInfo", kGet, 0x5000A, "not read", "getsysteminfo getchannelinfo", kNoBody, 0x5000A,
         system, Bytes().Zeros(16).Text(Field("wall", 64)).U32(-2000000001UL).Text(systemTexts)},
        {"GetChannelGroup", kGet, 0x6000D, Bytes().Text(kWall).U32(-2000000002UL), "setchannelgroup",
         Body(Elem("channelgroup", Elem("id", -2000000002))), 0x6000E, groups,
         Bytes().U32(1).Text(GroupRecord(kNoGuid, -2000000004UL, 0, -30UL, "entrances", "1,2"))},
        {"GetWindowConfig", kGet, 0x60013, "not read", "getwindowconfig", kNoBody, 0x60013,
         Switches(4294967295, 4294967294), SwitchesText(4294967295, 4294967294, "getWindowConfig")},
        {"GetAudioConfig", kGet, 0x60016, Sound(), "getaudioconfig", Body(""), 0x60016,
         Elem("td_windowlist",
              WindowItem(-2000000002, Item(Elem("index", -2000000004) + Elem("channelid", -2000000009)))),
         Guids().U32(1).U32(-2000000002UL).U32(1).U32(-2000000004UL).U32(-2000000009UL)},
        {"doSetCanvasSplit", kSave, 0x5000E, Canvas(), "dosplitwindow", kCanvas, 0x60006},
        {"DrawBorder", kSave, 0x60003, Bytes().U32(1).U16(65535).U32(2).U16(0).U16(65535).U16(0x8000).U16(1),
         "dodrawborder",
         Windows(WindowItem(-1, Item(Elem("index", 0) + Elem("drawborder", -1)) +
                                    Item(Elem("index", -32768) + Elem("drawborder", 1)))),
         0x60003},
        {"SetChannelGroup", kSave, 0x6000C, Group(), "setchannelgroup", kGroup, 0x6000E},
        {"SetWallInfo", kSave, 0x60010, wall, "setwallinfo",
         Windows(WallWindowItem("8", WallStreamItem("12", 6))), 0x60010},
        {"doClearWall", kSave, 0x60011, "not read", "dowallclear", Body(""), 0x60011},
        {"SetWindowConfig", kSave, 0x60012, Guids().U16(65535).U16(65534), "setwindowconfig",
         Body(Switches(65535, 65534)), 0x60012, Switches(7, 8),
         SwitchesText(65535, 65534, "setWindowConfig")},
        {"ProcLoginOutCmd", kOption, 0x50000, "not read", "dologout", kNoBody, kNoHead, "", ""},
        {"PlanWndZoom", kOption, 0x50014, Guids().U32(0xFFFFFFFE).U16(65535).U16(65534), "dofullscreen",
         Body(Elem("enable", 65535) +
              Elem("td_window", Elem("id", 4294967294) + Elem("td_subwindow", Elem("index", 65534)))),
         0x50014},
        {"PlayBackCtrl", kOption, 0x5001D,
         Bytes().U16(1).U16(65533).U16(2).U16(0).U16(65529).U16(65535).U16(65534).U16(8).U16(9),
         "doplaybackcontrol",
         Windows(WindowItem(65533,
                            Item(Elem("index", 0) + Elem("pbctrltype", 65529) + Elem("pbctrlval", 65535)) +
                                Item(Elem("index", 65534) + Elem("pbctrltype", 8) + Elem("pbctrlval", 9)))),
         0x5001D},
        {"PlayMedia", kOption, 0x60004, Media(), "doplaymedia",
         Windows(WindowItem(-8, Item(Elem("index", -9) + Elem("mediainfo", stream)))), 0x60004},
        {"StopPlayMedia", kOption, 0x60005, Media(), "dostopplaymedia",
         Windows(WindowItem(-8, Item(Elem("index", -9)))), 0x60005},
        {"CreateCanvas", kOption, 0x60006, Canvas(), "docreatewindow", kCanvas, 0x60006},
        {"DelCanvas", kOption, 0x60007, Guids().U32(2).U32(7).U32(0x80000000), "dodestroywindow",
         Windows(Item(Elem("id", 7)) + Item(Elem("id", 2147483648))), 0x60007},
        {"ChangeCanvas", kOption, 0x60008,
         Guids().U32(1).U32(-7UL).U32(-10UL).U32(-20UL).U32(-30UL).U32(-40UL), "domodifywindow",
         Windows(Item(Elem("id", -7) + Rect(-10, -20, -30, -40))), 0x60008},
        {"TopCanvas", kOption, 0x60009, Guids().U32(0xFFFFFFFE), "dowindowtop",
         Body(Elem("td_window", Elem("id", 4294967294))), 0x60009},
        {"AddChannelGroup", kOption, 0x6000A, Group(), "doaddchannelgroup", kGroup, 0x6000A},
        {"DeleteChannelGroup", kOption, 0x6000B, Bytes().Text(kWall).U32(2).U32(-7UL).U32(8),
         "dodeletechannelgroup", Body(Elem("channelgrouplist", Item(Elem("id", -7)) + Item(Elem("id", 8)))),
         0x6000B},
        {"StartChlGroupPolling", kOption, 0x6000E,
         Bytes().Text(kWall).U32(1).U32(-1UL).U32(2).U32(0).U32(-8UL).U32(0xFFFFFFFF).U32(9),
         "dostartchlgrouppolling",
         Windows(WindowItem(-1, Item(Elem("index", 0) + Elem("channelgroup", 4294967288)) +
                                    Item(Elem("index", 4294967295) + Elem("channelgroup", 9)))),
         0x6000E},
        {"StopChlGroupPolling", kOption, 0x6000F, Media(), "dostopplaymedia",
         Windows(WindowItem(-8, Item(Elem("index", -9)))), 0x60005},
        {"PlayAudio", kOption, 0x60014, Sound(), "doopensound",
         Windows(WindowItem(-3, Item(Elem("index", -6) + Elem("td_channel", -5)))), 0x60014},
        {"StopAudio", kOption, 0x60015, Sound(), "doclosesound",
         Windows(WindowItem(-3, Item(Elem("index", -6)))), 0x60015},
    };
}

} // namespace

std::string ScreenRecord(unsigned long id, const std::string& name, unsigned long x, unsigned long y)
{
    return Bytes().U32(id).Text(Field(name, 256)).U32(x).U32(y);
}

std::string GroupRecord(const std::string& guid, unsigned long id, unsigned long channelCount,
                        unsigned long interval, const std::string& name, const std::string& channels)
{
    Bytes group = Bytes().Text(guid).U32(id).U32(channelCount).U32(interval);
    return group.Text(Field(name, 256)).Text(Field(channels, 16));
}

std::string StreamRecord(const std::string& guid, unsigned long channel, const std::string& user,
                         const std::string& pwd, const std::string& gap)
{
    Bytes media = Bytes().U32(channel).Text(guid).U32(-1UL).U32(-2UL).U32(-3UL).U32(-4UL).U32(0x80000000);
    media.U32(-6UL).Text(gap).U32(-1UL).U32(-1UL).U32(7).U32(1).Text(Field(kAddress, 32));
    return media.Text(Field(user, 256)).Text(Field(pwd, 256));
}

std::string StreamElements(const std::string& channel, const std::string& user, const std::string& pwd)
{
    return Elem("type", -1) + Elem("reqmode", -2) + Elem("addr", kSentAddress) + Elem("port", -3) + channel +
           Elem("user", user) + Elem("pwd", pwd) + Elem("begintime", -1) + Elem("endtime", 4294967303) +
           Elem("streamtype", -4) + Elem("recordmask", 2147483648) + Elem("source", -6);
}

std::string WallWindowRecord(unsigned int id, unsigned long subWindows)
{
    return Bytes().U16(id).U16(65532).U16(65533).U16(40000).U16(50005).U16(0xFFFF).U16(50007).U32(subWindows);
}

std::string WallWindowItem(const std::string& id, const std::string& subItems)
{
    return Item(Elem("id", id) + Rect(40000, 50005, 65535, 50007) + Elem("layerindex", 65532) +
                Elem("mode", 65533) + Elem("td_subwindowlist", subItems));
}

std::string WallStreamRecord(const std::string& guid, unsigned long channel, unsigned int reqMode)
{
    Bytes media =
        Bytes().U16(0xFFFF).U16(65527).U16(60000).U16(reqMode).U16(50000).Text("gp").U32(-1UL).U32(-2UL);
    media.U32(-8UL).Text(guid).Text(Field(kAddress, 32));
    return media.Text(Field(kSourceUser, 256)).Text(Field(kSourcePassword, 256)).U32(channel);
}

std::string WallStreamItem(const std::string& channelid, int reqMode)
{
    const std::string media = Elem("type", 60000) + Elem("reqmode", reqMode) + Elem("addr", kSentAddress) +
                              Elem("port", 50000) + Elem("channelid", channelid) + Elem("user", kSourceUser) +
                              Elem("pwd", kSourcePassword) + Elem("streamtype", 4294967288);
    return Item(Elem("index", 65535) + Elem("osdid", 65527) +
                (channelid.empty() ? "" : Elem("mediainfo", media)));
}

std::string CommandSample::Payload() const { return optType == kNoOption ? record : Option(optType, record); }

std::string CommandSample::Answer() const
{
    const std::string data = answerData.value_or(record);
    return answerType == kNoHead ? "buffer " + Hex(data) : ResultOf(answerType, data);
}

const std::vector<CommandSample>& CommandSamples()
{
    static const std::vector<CommandSample> kSamples = MakeSamples();
    return kSamples;
}

const CommandSample& CommandSampleOf(const std::string& handler)
{
    for (const CommandSample& sample : CommandSamples()) {
        if (sample.name == handler) {
            return sample;
        }
    }
    throw std::invalid_argument("no sample of " + handler);
}
