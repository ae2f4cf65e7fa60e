#include "Requests/RequestHandlers.h"

#include <algorithm>
#include <iterator>

namespace simulated_decoder {

namespace {

constexpr RequestRow kRequests[] = {
    {"dooption", Access::Anyone, DoOption},
    {"dologin", Access::Session, DoLogin},
    {"dologout", Access::Login, DoLogout},
    {"docreatewindow", Access::Login, DoCreateWindow},
    {"domodifywindow", Access::Login, DoModifyWindow},
    {"dosplitwindow", Access::Login, DoSplitWindow},
    {"dowindowtop", Access::Login, DoWindowTop},
    {"dodestroywindow", Access::Login, DoDestroyWindow},
    {"dowallclear", Access::Login, DoWallClear},
    {"setwallinfo", Access::Login, DoSetWall},
    {"setwalllayout", Access::Login, DoSetLayout},
    {"getwalllayout", Access::Login, DoGetLayout},
    {"dobindwall", Access::Login, DoBind},
    {"dounbindwall", Access::Login, DoUnbind},
    {"doplaymedia", Access::Login, DoPlayMedia},
    {"dostopplaymedia", Access::Login, DoStopMedia}, // also ends polling
    {"doplaybackcontrol", Access::Login, DoPlaybackControl},
    {"doopensound", Access::Login, DoOpenSound},
    {"doclosesound", Access::Login, DoCloseSound},
    {"getaudioconfig", Access::Login, DoGetSound},
    {"doaddchannelgroup", Access::Login, DoAddGroup},
    {"setchannelgroup", Access::Login, DoSetOrGetGroup}, // hosts ask for groups by this url
    {"getchannelgroup", Access::Login, DoGetGroup},
    {"dodeletechannelgroup", Access::Login, DoDeleteGroup},
    {"dostartchlgrouppolling", Access::Login, DoStartPolling},
    {"dodrawborder", Access::Login, DoDrawBorder},
    {"dofullscreen", Access::Login, DoFullScreen},
    {"setwindowconfig", Access::Login, DoSetWindowConfig},
    {"getwindowconfig", Access::Login, DoGetWindowConfig},
    {"getsysteminfo", Access::Login, DoGetSystemInfo},
    {"getbasicconfig", Access::Login, DoGetBasicConfig},
    {"getchannelinfo", Access::Login, DoGetChannels},
};

} // namespace

const RequestRow* FindRequest(std::string_view url)
{
    const auto* row = std::find_if(std::begin(kRequests), std::end(kRequests),
                                   [url](const RequestRow& candidate) { return candidate.url == url; });
    return row != std::end(kRequests) ? row : nullptr;
}

std::vector<std::string_view> ServedUrls()
{
    std::vector<std::string_view> urls;
    std::transform(std::begin(kRequests), std::end(kRequests), std::back_inserter(urls),
                   [](const RequestRow& row) { return row.url; });
    return urls;
}

ErrorCode CarryOut(RequestContext& context)
{
    const RequestRow* row = FindRequest(context.request.Url());
    if (row == nullptr) {
        return ErrorCode::UnknownUrl;
    }
    if (row->access != Access::Anyone && !context.session.IsSession(context.request.Header("session"))) {
        return ErrorCode::WrongSession;
    }
    if (row->access == Access::Login && !context.session.IsToken(context.request.Header("token"))) {
        return ErrorCode::WrongToken;
    }
    return row->handler(context);
}

} // namespace simulated_decoder
