#include "Commands/Records/Media.h"

#include <limits>

#include "Base/GuidText.h"
#include "Tools/Common/Numbers.h"

namespace standin_host {

bool ParseChannel(const std::string& strText, SMedia& media)
{
    if (const auto nChannel = tools::ParseNumber(strText, 0, std::numeric_limits<int32_t>::max())) {
        media.nChannel = static_cast<int32_t>(*nChannel);
        media.nRequestMode = kNumericChannelMode;
        return true;
    }
    const auto guid = ParseGuid(strText);
    media.channel = guid.value_or(GUID{});
    return guid.has_value();
}

SRecord PlayMediaRecord(int32_t nWindow, int32_t nIndex, const SMedia& media)
{
    CByteWriter writer;
    writer.Count(1).I32(nWindow).Count(1).I32(nIndex).Count(1);
    writer.I32(media.nChannel).Guid(media.channel).I32(media.nType).I32(media.nRequestMode);
    writer.I32(media.nPort).I32(media.nStreamType).U32(media.nRecordMask).I32(media.nSelector);
    writer.Zeros(4); // the times lie on a multiple of 8
    writer.U64(media.nBegin).U64(media.nEnd).Text(media.strAddress, kMaxSourceAddress + 1);
    writer.Text(media.strUser, kMaxSourceCredential + 1).Secret(media.strPassword, kMaxSourceCredential + 1);
    return writer.Take();
}

SRecord WallRecord(const std::vector<SWallWindow>& windows)
{
    CByteWriter writer;
    writer.Count(windows.size());
    for (const SWallWindow& window : windows) {
        writer.U16(window.nID).U16(window.nLayer).U16(window.nMode);
        writer.U16(window.nX).U16(window.nY).U16(window.nWidth).U16(window.nHeight);
        writer.Count(window.subWindows.size());
        for (const SWallSubWindow& sub : window.subWindows) {
            const SMedia& media = sub.media;
            writer.U16(sub.nIndex).U16(sub.nOsdId);
            writer.U16(media.nType).U16(media.nRequestMode).U16(media.nPort);
            writer.Zeros(2); // the times lie on a multiple of 4
            writer.U32(static_cast<int64_t>(media.nBegin)).U32(static_cast<int64_t>(media.nEnd));
            writer.U32(media.nStreamType).Guid(media.channel);
            writer.Text(media.strAddress, kMaxSourceAddress + 1);
            writer.Text(media.strUser, kMaxSourceCredential + 1);
            writer.Secret(media.strPassword, kMaxSourceCredential + 1);
            writer.I32(media.nChannel);
        }
    }
    return writer.Take();
}

} // namespace standin_host
