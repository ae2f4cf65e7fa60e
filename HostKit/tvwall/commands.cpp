#include "tvwall/commands.h"

#include <cstring>
#include <limits>
#include <list>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

#include "DecodeComm.h"
#include "MonitorTvwComm.h"
#include "SysHelper.h"
#include "TvwallProtocol.h"

namespace tvwall {

namespace {

using namespace ORVA2_CLIENT_TVW;
using namespace ORVA2_DECODER_TVW;
using namespace ORVA_NET_PROTOCOL;

constexpr std::int64_t kNumericChannelMode = 6; // the request mode in which a decoder looks for a number

// --- fields ---

template <class Field, class Number>
void Put(Field& field, Number number, const char* name)
{
    if (!std::in_range<Field>(number)) {
        throw std::out_of_range(std::string(name) + ' ' + std::to_string(number) + " is not between " +
                                std::to_string(std::numeric_limits<Field>::min()) + " and " +
                                std::to_string(std::numeric_limits<Field>::max()));
    }
    field = static_cast<Field>(number);
}

template <class Field, class Kind>
void Put(Field& field, Id<Kind> id, const char* name)
{
    Put(field, id.number, name);
}

template <std::size_t size>
void PutText(char (&field)[size], std::string_view text, const char* name)
{
    if (text.size() > size || text.find('\0') != std::string_view::npos) {
        throw std::length_error(std::string(name) + " has more than " + std::to_string(size) +
                                " bytes, or a zero byte");
    }
    text.copy(field, size);
}

// A new item at the end of a list, and counted; wiped in the end, since some hold passwords.
template <class Count, class Item>
Item& Append(Count& count, std::list<std::shared_ptr<Item>>& items)
{
    Put(count, items.size() + 1, "a number of items");
    return *items.emplace_back(std::allocate_shared<Item>(TWipingAllocator<Item>()));
}

template <class Image>
Payload ImageBytes(const Image& image)
{
    static_assert(std::is_trivially_copyable_v<Image>);
    Payload bytes(sizeof image);
    std::memcpy(bytes.data(), &image, sizeof image);
    return bytes;
}

template <class Record>
Payload RecordBytes(const Record& record)
{
    if constexpr (std::is_trivially_copyable_v<Record>) {
        return ImageBytes(record);
    } else {
        return record.template Encode<Payload>();
    }
}

// --- the commands that carry an option: head and record ---

// With an answer type of its own unless one is given.
Command OptionBytes(std::uint32_t id, std::uint32_t optType, const Payload& record, std::uint32_t answerType)
{
    _kest_tvwall_opt_info head;
    head.nOptType = optType;
    Put(head.nLen, record.size(), "the length of the record");
    Command command{id, ImageBytes(head), answerType};
    command.payload.insert(command.payload.end(), record.begin(), record.end());
    return command;
}

template <class Record>
Command Option(std::uint32_t optType, const Record& record)
{
    return OptionBytes(KEST_CMD_TVWALL_DECODE_OPTION, optType, RecordBytes(record), optType);
}

template <class Record>
Command Save(std::uint32_t optType, const Record& record)
{
    return OptionBytes(KEST_CMD_TVWALL_DECODE_SAVE_CONFIG, optType, RecordBytes(record), optType);
}

template <class Record>
Command Get(std::uint32_t optType, const Record& record)
{
    return OptionBytes(KEST_CMD_TVWALL_DECODE_GET_CONFIG, optType, RecordBytes(record), optType);
}

Command Get(std::uint32_t optType)
{
    return OptionBytes(KEST_CMD_TVWALL_DECODE_GET_CONFIG, optType, {}, optType);
}

Command AnsweredAs(std::uint32_t answerType, Command command)
{
    command.answerType = answerType;
    return command;
}

// --- windows ---

template <class Field>
void PutSize(Field& width, Field& height, const Rect& rect)
{
    Put(width, rect.width, "a window's width");
    Put(height, rect.height, "a window's height");
}

template <class Field>
void PutCorner(Field& x, Field& y, const Rect& rect)
{
    Put(x, rect.x, "a window's x");
    Put(y, rect.y, "a window's y");
}

S_MTvw_Create_CavansWindow WindowsRecord(const std::vector<Window>& windows)
{
    S_MTvw_Create_CavansWindow record;
    for (const Window& window : windows) {
        auto& item = Append(record._listCount, record._listCanvas);
        Put(item._nID, window.id, "the window id");
        PutCorner(item._nXPos, item._nYpos, window.rect);
        PutSize(item._nWidth, item._nHeight, window.rect);
        Put(item._layId, window.layer, "a window's layer");
        item._zoomWndIndex = -1; // none of them
        for (const OsdId osdId : window.osdIds) {
            const auto index = item._nMode;
            auto& sub = Append(item._nMode, item._listSubWindow);
            sub._nIndex = index;
            Put(sub._nOsdid, osdId, "the OSD id");
        }
    }
    return record;
}

// Windows and their sub-windows, in records that have the same shape and different names.
template <class Count, class Item, class SubWindow, class Fill>
void FillWindows(Count& count, std::list<std::shared_ptr<Item>>& items,
                 const std::vector<InWindow<SubWindow>>& windows, Fill fill)
{
    for (const auto& window : windows) {
        auto& item = Append(count, items);
        Put(item._id, window.window, "the window id");
        for (const SubWindow& sub : window.subWindows) {
            fill(item, sub);
        }
    }
}

// --- sources ---

template <class Field>
void PutChannel(Field& number, GUID& guid, const SourceChannel& channel)
{
    number = -1;
    if (const auto* given = std::get_if<ChannelNumber>(&channel)) {
        Put(number, *given, "the channel");
    } else if (const auto* id = std::get_if<GUID>(&channel)) {
        guid = *id;
    }
}

std::int64_t RequestMode(const Source& source)
{
    const bool numeric = std::holds_alternative<ChannelNumber>(source.channel);
    return source.requestMode.value_or(numeric ? kNumericChannelMode : 0);
}

// What both records of a source have, with different names and widths.
template <class Media>
void PutSource(Media& media, const Source& source)
{
    PutChannel(media._channelIdInt, media._channelid, source.channel);
    Put(media._type, source.type, "the media type");
    Put(media._reqmode, RequestMode(source), "the request mode");
    Put(media._port, source.port, "the source's port");
    Put(media._begintime, source.begin, "the begin time");
    Put(media._endtime, source.end, "the end time");
    PutText(media._addr, source.address, "the source's address");
    PutText(media._user, source.user, "the source's user name");
    PutText(media._pwd, source.password, "the source's password");
}

void PutSource(S_MTvw_Wall_Set_wall_Subwin_Medinfo& media, const Source* source)
{
    media._channelIdInt = -1; // nothing is shown
    if (source == nullptr) {
        return;
    }
    if (source->recordMask != 0 || source->selector != 0) {
        throw std::out_of_range("a whole wall has no record masks and selectors");
    }
    PutSource(media, *source);
    Put(media._streamType, source->streamType, "the stream type");
}

S_MTvw_Wall_Media MediaRecord(const std::vector<InWindow<SubWindowIndex>>& windows)
{
    S_MTvw_Wall_Media record;
    FillWindows(record._numwind, record._mediaWind, windows, [](auto& window, SubWindowIndex index) {
        Put(Append(window._numwind, window._subWind)._index, index, "the sub-window index");
    });
    return record;
}

S_MTvw_Get_Audio_Config SoundRecord(const std::vector<InWindow<SubWindowSound>>& windows)
{
    S_MTvw_Get_Audio_Config record;
    FillWindows(record._cavCnt, record._cavList, windows, [](auto& window, const SubWindowSound& sub) {
        auto& item = Append(window._subCnt, window._subList);
        Put(item._index, sub.index, "the sub-window index");
        Put(item._channelId, sub.channel, "the channel");
    });
    return record;
}

S_MTvw_Wall_Channel_Group_Info GroupRecord(const ChannelGroup& group)
{
    S_MTvw_Wall_Channel_Group_Info record;
    Put(record._nid, group.id, "the group id");
    Put(record._channelnum, group.channelCount, "the number of channels");
    Put(record._interval, group.interval, "the interval");
    PutText(record._name, group.name, "the group's name");
    PutText(record._td_channellist, group.channels, "the list of channels");
    return record;
}

// --- layout ---

S_MTvw_Wall_Layout LayoutRecord(const std::vector<Screen>& screens)
{
    S_MTvw_Wall_Layout record;
    for (const Screen& screen : screens) {
        auto& item = Append(record._numchannel, record._channelList);
        Put(item._id, screen.output, "the output");
        PutText(item._name, screen.name, "the screen's name");
        Put(item._coordinate._xPos, screen.place.column, "the column");
        Put(item._coordinate._yPos, screen.place.row, "the row");
    }
    return record;
}

Command LayoutCommand(std::uint32_t id, const S_MTvw_Wall_Layout& record)
{
    return {id, RecordBytes(record), 0};
}

} // namespace

std::string GuidText(const GUID& guid) { return CSysHelper::GuidToString(guid); }

Command LogIn(std::string_view user, std::string_view password)
{
    TWiped<_kest_net_login_info> record;
    PutText(record.value.username, user, "the user name");
    PutText(record.value.password, password, "the password");
    return {KEST_CMD_REQUEST_LOGIN, ImageBytes(record.value), 0};
}

Command LogOut() { return OptionBytes(KEST_CMD_TVWALL_DECODE_OPTION, TVWALL_DECODE_LOGOUT, {}, 0); }

Command GetSystemInfo() { return Get(TVWALL_DECODE_GET_SYSINFO); }

Command GetBasicConfig() { return Get(TVWALL_DECODE_GET_BASICCFG); }

Command GetLayout() { return {KEST_CMD_TVWALL_DECODE_GET_WALL_LAYOUT, {}, 0}; }

Command SetLayout(std::int64_t rows, std::int64_t columns)
{
    S_MTvw_Wall_Layout record;
    Put(record.rowCol._row, rows, "the number of rows");
    Put(record.rowCol._col, columns, "the number of columns");
    return LayoutCommand(KEST_CMD_TVWALL_DECODE_SET_WALL_LAYOUT, record);
}

Command BindScreens(const std::vector<Screen>& screens)
{
    return LayoutCommand(KEST_CMD_TVWALL_DECODE_DO_BIND_WALL, LayoutRecord(screens));
}

Command UnbindScreens(const std::vector<ScreenPlace>& places)
{
    std::vector<Screen> screens;
    screens.reserve(places.size());
    for (const ScreenPlace& place : places) {
        screens.push_back({{}, place, {}});
    }
    return LayoutCommand(KEST_CMD_TVWALL_DECODE_DO_UNBIND_WALL, LayoutRecord(screens));
}

Command CreateWindows(const std::vector<Window>& windows)
{
    return Option(TVWALL_DECODE_CREATE_CANVAS, WindowsRecord(windows));
}

Command SplitWindows(const std::vector<Window>& windows)
{
    return AnsweredAs(TVWALL_DECODE_CREATE_CANVAS,
                      Save(TVWALL_DECODE_SET_DECODERFRAME, WindowsRecord(windows)));
}

Command DeleteWindows(const std::vector<WindowId>& windows)
{
    S_MTvw_Del_CavansWindow record;
    for (const WindowId window : windows) {
        Put(Append(record._listCount, record._listDelCanvas)._nID, window, "the window id");
    }
    return Option(TVWALL_DECODE_DEL_CANVAS, record);
}

Command RaiseWindow(WindowId window)
{
    S_MTvw_Top_Canvas_Item record{};
    Put(record._id, window, "the window id");
    return Option(TVWALL_DECODE_TOP_CANVAS, record);
}

Command MoveWindows(const std::vector<MovedWindow>& windows)
{
    S_MTvw_Modyfy_CavansWindow record;
    for (const MovedWindow& window : windows) {
        auto& item = Append(record._listCount, record._listModfyCanvas);
        Put(item._nID, window.id, "the window id");
        PutCorner(item._nPositionX, item._nPositionY, window.rect);
        PutSize(item._nWidth, item._nHeight, window.rect);
    }
    return Option(TVWALL_DECODE_MODIFY_CANVAS, record);
}

Command ClearWall()
{
    return OptionBytes(KEST_CMD_TVWALL_DECODE_SAVE_CONFIG, TVWALL_DECODE_CLEAR_WALL, {},
                       TVWALL_DECODE_CLEAR_WALL);
}

Command SetWall(const std::vector<WallWindow>& windows)
{
    S_MTvw_Wall_Set_wall_V2 record;
    for (const WallWindow& window : windows) {
        auto& item = Append(record._numwind, record._windList);
        Put(item._id, window.id, "the window id");
        Put(item._layerindx, window.layer, "a window's layer");
        Put(item._mode, window.mode.value_or(static_cast<std::int64_t>(window.subWindows.size())),
            "the split mode");
        PutCorner(item._rect._xPos, item._rect._yPos, window.rect);
        PutSize(item._rect._width, item._rect._height, window.rect);
        for (const WallSubWindow& sub : window.subWindows) {
            auto& image = Append(item._numwind, item._subwin);
            Put(image._index, sub.index, "the sub-window index");
            Put(image._osdid, sub.osdId, "the OSD id");
            PutSource(image._mediaInfo, sub.source ? &*sub.source : nullptr);
        }
    }
    return Save(TVWALL_DECODE_SET_WALL_INFO, record);
}

Command PlayMedia(const std::vector<InWindow<SubWindowMedia>>& windows)
{
    S_MTvw_Wall_Media record;
    FillWindows(record._numwind, record._mediaWind, windows, [](auto& window, const SubWindowMedia& sub) {
        auto& item = Append(window._numwind, window._subWind);
        Put(item._index, sub.index, "the sub-window index");
        for (const Source& source : sub.sources) {
            auto& media = Append(item._numinfo, item._mediaInfo);
            PutSource(media, source);
            Put(media._streamtype, source.streamType, "the stream type");
            Put(media._recordmask, source.recordMask, "the record mask");
            Put(media._source, source.selector, "the selector");
        }
    });
    return Option(TVWALL_DECODE_DO_PLAY_MEDIA, record);
}

Command StopMedia(const std::vector<InWindow<SubWindowIndex>>& windows)
{
    return Option(TVWALL_DECODE_DO_STOP_PLAY_MEDIA, MediaRecord(windows));
}

Command ControlPlayback(const std::vector<InWindow<SubWindowPlayback>>& windows)
{
    S_Playback_Ctrl_Items_V2 record;
    FillWindows(record._cavNum, record._nCavs, windows, [](auto& window, const SubWindowPlayback& sub) {
        auto& item = Append(window._wndNum, window._subWnd);
        Put(item._nIndex, sub.index, "the sub-window index");
        Put(item._nPbCtrlType, sub.type, "the control type");
        Put(item._nPbCtrlVal, sub.value, "the control value");
    });
    return Option(TVWALL_DECODE_PLAYBACK_CTRL, record);
}

Command PlaySound(const std::vector<InWindow<SubWindowSound>>& windows)
{
    return Option(TVWALL_DECODE_PLAY_AUDIO, SoundRecord(windows));
}

Command StopSound(const std::vector<InWindow<SubWindowIndex>>& windows)
{
    std::vector<InWindow<SubWindowSound>> sounds;
    for (const auto& window : windows) {
        auto& sound = sounds.emplace_back();
        sound.window = window.window;
        for (const SubWindowIndex index : window.subWindows) {
            sound.subWindows.push_back({index, {}});
        }
    }
    return Option(TVWALL_DECODE_STOP_AUDIO, SoundRecord(sounds));
}

Command GetSound(const SoundOwner& owner)
{
    S_MTvw_Get_Audio_Config record;
    record._nwallGuid = owner.wall;
    record._DecGuid = owner.decoder;
    return Get(TVWALL_DECODE_GET_AUDIO_CONFIG, record);
}

Command AddChannelGroup(const ChannelGroup& group)
{
    return Option(TVWALL_DECODE_ADD_CHANNEL_GROUP, GroupRecord(group));
}

Command SetChannelGroup(const ChannelGroup& group)
{
    return AnsweredAs(TVWALL_DECODE_START_CHLGROUP_POLLING,
                      Save(TVWALL_DECODE_SET_CHANNEL_GROUP, GroupRecord(group)));
}

Command DeleteChannelGroups(const std::vector<GroupId>& groups)
{
    S_MTvw_Wall_Delete_Channel_Group record;
    for (const GroupId group : groups) {
        Put(Append(record._numchgroup, record._chgrouplist)._id, group, "the group id");
    }
    return Option(TVWALL_DECODE_DELETE_CHANNEL_GROUP, record);
}

Command GetChannelGroup(GroupId group)
{
    S_MTvw_Wall_Get_ChGroup record;
    Put(record._id, group, "the group id");
    return AnsweredAs(TVWALL_DECODE_START_CHLGROUP_POLLING, Get(TVWALL_DECODE_GET_CHANNEL_GROUP, record));
}

Command GetChannelGroups() { return GetChannelGroup({0}); }

Command StartPolling(const std::vector<InWindow<SubWindowPolling>>& windows)
{
    S_MTvw_Wall_Start_Chl_GrPolling record;
    FillWindows(record._numgrpoll, record._GrPollinglist, windows,
                [](auto& window, const SubWindowPolling& sub) {
                    auto& item = Append(window._subitemSize, window._subitemList);
                    Put(item._index, sub.index, "the sub-window index");
                    Put(item._channelgroup, sub.group, "the group id");
                });
    return Option(TVWALL_DECODE_START_CHLGROUP_POLLING, record);
}

Command StopPolling(const std::vector<InWindow<SubWindowIndex>>& windows)
{
    return AnsweredAs(TVWALL_DECODE_DO_STOP_PLAY_MEDIA,
                      Option(TVWALL_DECODE_STOP_CHLGROUP_POLLING, MediaRecord(windows)));
}

Command DrawBorders(const std::vector<InWindow<SubWindowBorder>>& windows)
{
    S_Decoder_Draw_Border record;
    FillWindows(record._windCount, record._windlist, windows, [](auto& window, const SubWindowBorder& sub) {
        auto& item = Append(window._subwindCount, window._subwindlist);
        Put(item._index, sub.index, "the sub-window index");
        item._drawborder = sub.drawn ? 1 : 0;
    });
    return Save(TVWALL_DECODE_DRAWBODER, record);
}

Command Zoom(WindowId window, SubWindowIndex index, bool zoomed)
{
    S_MTvw_PlanWnd_Zoom_v2 record{};
    Put(record._nWndID, window, "the window id");
    record._bZoom = zoomed ? 1 : 0;
    Put(record._nIndex, index, "the sub-window index");
    return Option(TVWALL_DECODE_ZOOMOUT, record);
}

Command SetDisplaySwitches(bool borders, bool windowIds)
{
    S_MTvw_Wall_Set_WindCfg_V2 record{};
    record._enableborder = borders ? 1 : 0;
    record._enableshowwinid = windowIds ? 1 : 0;
    return Save(TVWALL_DECODE_SET_WINDOW_CONFIG, record);
}

Command GetDisplaySwitches() { return Get(TVWALL_DECODE_GET_WINDOW_CONFIG); }

} // namespace tvwall
