#include <utility>

#include "Requests/MediaReading.h"

namespace simulated_decoder {

using tinyxml2::XMLElement;

ErrorCode DoPlayMedia(RequestContext& context)
{
    return ChangeSubWindows(context, [&](const XMLElement& item, SubWindowChange& change) {
        const XMLElement* mediaInfo = Child(&item, "mediainfo");
        std::vector<Media> media;
        const ErrorCode code = mediaInfo != nullptr ? ReadMedia(context, *mediaInfo, MediaForm::Full, media)
                                                    : ErrorCode::BadValue;
        change = [media = std::move(media)](SubWindow& subWindow) {
            subWindow.StopShowing();
            subWindow.media = media;
            return ErrorCode::Success;
        };
        return code;
    });
}

ErrorCode DoStopMedia(RequestContext& context)
{
    return ChangeSubWindows(context, [](const XMLElement&, SubWindowChange& change) {
        change = [](SubWindow& subWindow) {
            subWindow.StopShowing();
            return ErrorCode::Success;
        };
        return ErrorCode::Success;
    });
}

ErrorCode DoPlaybackControl(RequestContext& context)
{
    return ChangeSubWindows(context, [](const XMLElement& item, SubWindowChange& change) {
        const auto type = ChildNumber<std::uint16_t>(&item, "pbctrltype");
        const auto value = ChildNumber<std::uint16_t>(&item, "pbctrlval");
        if (!type || !value) {
            return ErrorCode::BadValue;
        }
        change = [control = PlaybackControl{*type, *value}](SubWindow& subWindow) {
            if (subWindow.media.empty()) {
                return ErrorCode::NothingPlaying;
            }
            subWindow.control = control;
            return ErrorCode::Success;
        };
        return ErrorCode::Success;
    });
}

} // namespace simulated_decoder
