#include "Commands/Records/Payloads.h"

#include <cstddef>

#include "TvwallProtocol.h"

namespace standin_host {

namespace {

// Identifiers of wall, plan or decoder, which never reach the decoder.
constexpr std::size_t kOneGuid = sizeof(GUID);
constexpr std::size_t kTwoGuids = 2 * sizeof(GUID);

// Windows and their sub-windows: the record's head and count are already in the writer.
template <class TWindow, class TSubWindow>
Record Tree(ByteWriter writer, const std::vector<SubWindows>& windows, TWindow window, TSubWindow subWindow)
{
    for (const SubWindows& each : windows) {
        window(writer, each);
        for (const SubWindow& sub : each.subWindows) {
            subWindow(writer, sub);
        }
    }
    return writer.Take();
}

void WideWindow(ByteWriter& writer, const SubWindows& window)
{
    writer.I32(window.window).Count(window.subWindows.size());
}

void IndexAndNumber(ByteWriter& writer, const SubWindow& sub) { writer.I32(sub.index).I32(sub.first); }

} // namespace

Record CreateRecord(const std::vector<Window>& windows)
{
    ByteWriter writer;
    writer.Zeros(kTwoGuids).Count(windows.size());
    for (const Window& window : windows) {
        writer.U32(window.id).U32(window.x).U32(window.y).U32(window.width).U32(window.height);
        writer.U16(0).U16(0).U16(0).U16(0); // the absolute rectangle
        writer.Count(window.osdIds.size()).U32(window.layer);
        writer.I32(-1); // no sub-window is zoomed
        uint32_t index = 0;
        for (const uint32_t osdId : window.osdIds) {
            writer.U32(index++).U32(osdId);
        }
    }
    return writer.Take();
}

Record MoveRecord(const std::vector<WindowMove>& moves)
{
    ByteWriter writer;
    writer.Zeros(kTwoGuids).Count(moves.size());
    for (const WindowMove& move : moves) {
        writer.I32(move.id).I32(move.x).I32(move.y).I32(move.width).I32(move.height);
    }
    return writer.Take();
}

Record DeleteRecord(const std::vector<uint32_t>& ids)
{
    ByteWriter writer;
    writer.Zeros(kTwoGuids).Count(ids.size());
    for (const uint32_t id : ids) {
        writer.U32(id);
    }
    return writer.Take();
}

Record RaiseRecord(uint32_t id) { return ByteWriter().Zeros(kTwoGuids).U32(id).Take(); }

Record LayoutRecord(uint32_t rows, uint32_t columns, const std::vector<Screen>& screens)
{
    ByteWriter writer;
    writer.U32(rows).U32(columns).Count(screens.size());
    for (const Screen& screen : screens) {
        writer.U32(screen.id).Zeros(kScreenName).U32(screen.x).U32(screen.y);
    }
    return writer.Take();
}

Record GroupRecord(const ChannelGroup& group)
{
    return ByteWriter()
        .Zeros(kOneGuid)
        .I32(group.id)
        .U32(group.channelCount)
        .U32(group.interval)
        .Text(group.name, kMaxGroupName + 1)
        .Text(group.channelList, kMaxGroupChannels + 1)
        .Take();
}

Record DeleteGroupsRecord(const std::vector<int32_t>& ids)
{
    ByteWriter writer;
    writer.Zeros(kOneGuid).Count(ids.size());
    for (const int32_t id : ids) {
        writer.I32(id);
    }
    return writer.Take();
}

Record GetGroupRecord(int32_t id) { return ByteWriter().Zeros(kOneGuid).I32(id).Take(); }

Record StopMediaRecord(const std::vector<SubWindows>& windows)
{
    return Tree(ByteWriter().Count(windows.size()), windows, WideWindow,
                [](ByteWriter& writer, const SubWindow& sub) { writer.I32(sub.index).Count(0); });
}

Record PlaybackRecord(const std::vector<SubWindows>& windows)
{
    return Tree(
        ByteWriter().U16(static_cast<int64_t>(windows.size())), windows,
        [](ByteWriter& writer, const SubWindows& window) {
            writer.U16(window.window).U16(static_cast<int64_t>(window.subWindows.size()));
        },
        [](ByteWriter& writer, const SubWindow& sub) {
            writer.U16(sub.index).U16(sub.first).U16(sub.second);
        });
}

Record AudioRecord(const std::vector<SubWindows>& windows)
{
    return Tree(ByteWriter().Zeros(kTwoGuids).Count(windows.size()), windows, WideWindow, IndexAndNumber);
}

Record PollingRecord(const std::vector<SubWindows>& windows)
{
    return Tree(ByteWriter().Zeros(kOneGuid).Count(windows.size()), windows, WideWindow, IndexAndNumber);
}

Record BorderRecord(const std::vector<SubWindows>& windows)
{
    return Tree(
        ByteWriter().Count(windows.size()), windows,
        [](ByteWriter& writer, const SubWindows& window) {
            writer.I16(window.window).Count(window.subWindows.size());
        },
        [](ByteWriter& writer, const SubWindow& sub) { writer.I16(sub.index).I16(sub.first); });
}

Record ZoomRecord(uint32_t window, uint16_t index, bool zoom)
{
    return ByteWriter().Zeros(kTwoGuids).U32(window).U16(zoom ? 1 : 0).U16(index).Take();
}

Record WindowConfigRecord(bool borders, bool windowIds)
{
    return ByteWriter().Zeros(kTwoGuids).U16(borders ? 1 : 0).U16(windowIds ? 1 : 0).Take();
}

Record OptionPayload(uint32_t optType, const Record& record)
{
    return ByteWriter().U32(optType).Count(record.bytes.size()).Append(record).Take();
}

Record LoginRecord(const std::string& user, const std::string& password)
{
    using LoginInfo = ORVA_NET_PROTOCOL::_kest_net_login_info;
    return ByteWriter()
        .Zeros(offsetof(LoginInfo, username))
        .Text(user, sizeof(LoginInfo::username))
        .Secret(password, sizeof(LoginInfo::password))
        .Zeros(sizeof(LoginInfo) - offsetof(LoginInfo, IP))
        .Take();
}

} // namespace standin_host
