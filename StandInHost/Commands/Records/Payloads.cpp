#include "Commands/Records/Payloads.h"

#include <cstddef>

#include "TvwallProtocol.h"

namespace standin_host {

namespace {

// Identifiers of wall, plan or decoder, which the decoder is not told.
constexpr std::size_t kOneGuid = sizeof(GUID);
constexpr std::size_t kTwoGuids = 2 * sizeof(GUID);

constexpr std::size_t kScreenName = 256;

// Windows and their sub-windows: the record's head and count stand in the writer already.
template <class TWindow, class TSubWindow>
SRecord Tree(CByteWriter writer, const std::vector<SSubWindows>& windows, TWindow window,
             TSubWindow subWindow)
{
    for (const SSubWindows& each : windows) {
        window(writer, each);
        for (const SSubWindow& sub : each.subWindows) {
            subWindow(writer, sub);
        }
    }
    return writer.Take();
}

void WideWindow(CByteWriter& writer, const SSubWindows& window)
{
    writer.I32(window.nWindow).Count(window.subWindows.size());
}

void IndexAndNumber(CByteWriter& writer, const SSubWindow& sub) { writer.I32(sub.nIndex).I32(sub.nFirst); }

} // namespace

SRecord CreateRecord(const std::vector<SWindow>& windows)
{
    CByteWriter writer;
    writer.Zeros(kTwoGuids).Count(windows.size());
    for (const SWindow& window : windows) {
        writer.U32(window.nID).U32(window.nX).U32(window.nY).U32(window.nWidth).U32(window.nHeight);
        writer.U16(0).U16(0).U16(0).U16(0); // the absolute rectangle
        writer.Count(window.osdIds.size()).U32(window.nLayer);
        writer.I32(-1); // no sub-window is zoomed
        uint32_t nIndex = 0;
        for (const uint32_t nOsdId : window.osdIds) {
            writer.U32(nIndex++).U32(nOsdId);
        }
    }
    return writer.Take();
}

SRecord MoveRecord(const std::vector<SWindowMove>& moves)
{
    CByteWriter writer;
    writer.Zeros(kTwoGuids).Count(moves.size());
    for (const SWindowMove& move : moves) {
        writer.I32(move.nID).I32(move.nX).I32(move.nY).I32(move.nWidth).I32(move.nHeight);
    }
    return writer.Take();
}

SRecord DeleteRecord(const std::vector<uint32_t>& ids)
{
    CByteWriter writer;
    writer.Zeros(kTwoGuids).Count(ids.size());
    for (const uint32_t nID : ids) {
        writer.U32(nID);
    }
    return writer.Take();
}

SRecord RaiseRecord(uint32_t nID) { return CByteWriter().Zeros(kTwoGuids).U32(nID).Take(); }

SRecord LayoutRecord(uint32_t nRows, uint32_t nColumns, const std::vector<SScreen>& screens)
{
    CByteWriter writer;
    writer.U32(nRows).U32(nColumns).Count(screens.size());
    for (const SScreen& screen : screens) {
        writer.U32(screen.nID).Zeros(kScreenName).U32(screen.nX).U32(screen.nY);
    }
    return writer.Take();
}

SRecord GroupRecord(const SChannelGroup& group)
{
    return CByteWriter()
        .Zeros(kOneGuid)
        .I32(group.nID)
        .U32(group.nChannels)
        .U32(group.nInterval)
        .Text(group.strName, kMaxGroupName + 1)
        .Text(group.strChannels, kMaxGroupChannels + 1)
        .Take();
}

SRecord DeleteGroupsRecord(const std::vector<int32_t>& ids)
{
    CByteWriter writer;
    writer.Zeros(kOneGuid).Count(ids.size());
    for (const int32_t nID : ids) {
        writer.I32(nID);
    }
    return writer.Take();
}

SRecord GetGroupRecord(int32_t nID) { return CByteWriter().Zeros(kOneGuid).I32(nID).Take(); }

SRecord StopMediaRecord(const std::vector<SSubWindows>& windows)
{
    return Tree(CByteWriter().Count(windows.size()), windows, WideWindow,
                [](CByteWriter& writer, const SSubWindow& sub) { writer.I32(sub.nIndex).Count(0); });
}

SRecord PlaybackRecord(const std::vector<SSubWindows>& windows)
{
    return Tree(
        CByteWriter().U16(static_cast<int64_t>(windows.size())), windows,
        [](CByteWriter& writer, const SSubWindows& window) {
            writer.U16(window.nWindow).U16(static_cast<int64_t>(window.subWindows.size()));
        },
        [](CByteWriter& writer, const SSubWindow& sub) {
            writer.U16(sub.nIndex).U16(sub.nFirst).U16(sub.nSecond);
        });
}

SRecord AudioRecord(const std::vector<SSubWindows>& windows)
{
    return Tree(CByteWriter().Zeros(kTwoGuids).Count(windows.size()), windows, WideWindow, IndexAndNumber);
}

SRecord PollingRecord(const std::vector<SSubWindows>& windows)
{
    return Tree(CByteWriter().Zeros(kOneGuid).Count(windows.size()), windows, WideWindow, IndexAndNumber);
}

SRecord BorderRecord(const std::vector<SSubWindows>& windows)
{
    return Tree(
        CByteWriter().Count(windows.size()), windows,
        [](CByteWriter& writer, const SSubWindows& window) {
            writer.I16(window.nWindow).Count(window.subWindows.size());
        },
        [](CByteWriter& writer, const SSubWindow& sub) { writer.I16(sub.nIndex).I16(sub.nFirst); });
}

SRecord ZoomRecord(uint32_t nWindow, uint16_t nIndex, bool bZoom)
{
    return CByteWriter().Zeros(kTwoGuids).U32(nWindow).U16(bZoom ? 1 : 0).U16(nIndex).Take();
}

SRecord WindowConfigRecord(bool bBorders, bool bWindowIds)
{
    return CByteWriter().Zeros(kTwoGuids).U16(bBorders ? 1 : 0).U16(bWindowIds ? 1 : 0).Take();
}

SRecord OptionPayload(uint32_t nOptType, const SRecord& record)
{
    return CByteWriter().U32(nOptType).Count(record.bytes.size()).Append(record).Take();
}

SRecord LoginRecord(const std::string& strUser, const std::string& strPassword)
{
    using Record = ORVA_NET_PROTOCOL::_kest_net_login_info;
    return CByteWriter()
        .Zeros(offsetof(Record, username))
        .Text(strUser, sizeof(Record::username))
        .Secret(strPassword, sizeof(Record::password))
        .Zeros(sizeof(Record) - offsetof(Record, IP))
        .Take();
}

} // namespace standin_host
