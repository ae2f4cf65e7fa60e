#include "Commands/Records/Media.h"

#include <limits>

#include "Base/GuidText.h"
#include "Tools/Common/Numbers.h"

namespace standin_host {

bool ParseChannel(const std::string& text, Media& media)
{
    if (const auto channelNumber = tools::ParseNumber(text, 0, std::numeric_limits<int32_t>::max())) {
        media.channelNumber = static_cast<int32_t>(*channelNumber);
        media.requestMode = kNumericChannelMode;
        return true;
    }
    const auto guid = ParseGuid(text);
    media.channel = guid.value_or(GUID{});
    return guid.has_value();
}

Record PlayMediaRecord(int32_t window, int32_t index, const Media& media)
{
    ByteWriter writer;
    writer.Count(1).I32(window).Count(1).I32(index).Count(1);
    writer.I32(media.channelNumber).Guid(media.channel).I32(media.type).I32(media.requestMode);
    writer.I32(media.port).I32(media.streamType).U32(media.recordMask).I32(media.selector);
    writer.Zeros(4); // aligns the times to 8
    writer.U64(media.begin).U64(media.end).Text(media.address, kMaxSourceAddress + 1);
    writer.Text(media.user, kMaxSourceCredential + 1).Secret(media.password, kMaxSourceCredential + 1);
    return writer.Take();
}

Record WallRecord(const std::vector<WallWindow>& windows)
{
    ByteWriter writer;
    writer.Count(windows.size());
    for (const WallWindow& window : windows) {
        writer.U16(window.id).U16(window.layer).U16(window.mode);
        writer.U16(window.x).U16(window.y).U16(window.width).U16(window.height);
        writer.Count(window.subWindows.size());
        for (const WallSubWindow& sub : window.subWindows) {
            const Media& media = sub.media;
            writer.U16(sub.index).U16(sub.osdId);
            writer.U16(media.type).U16(media.requestMode).U16(media.port);
            writer.Zeros(2); // aligns the times to 4
            writer.U32(static_cast<int64_t>(media.begin)).U32(static_cast<int64_t>(media.end));
            writer.U32(media.streamType).Guid(media.channel);
            writer.Text(media.address, kMaxSourceAddress + 1);
            writer.Text(media.user, kMaxSourceCredential + 1);
            writer.Secret(media.password, kMaxSourceCredential + 1);
            writer.I32(media.channelNumber);
        }
    }
    return writer.Take();
}

} // namespace standin_host
