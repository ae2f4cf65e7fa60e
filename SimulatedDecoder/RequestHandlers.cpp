#include "RequestHandlers.h"

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
};

} // namespace

const RequestRow* FindRequest(std::string_view url)
{
    const auto* row = std::find_if(std::begin(kRequests), std::end(kRequests),
                                   [url](const RequestRow& candidate) { return candidate.url == url; });
    return row != std::end(kRequests) ? row : nullptr;
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
