#pragma once
// What the decoder does with each kind of request.

#include <cstddef>
#include <string_view>
#include <vector>

#include "Link/ErrorCode.h"
#include "Link/Message.h"
#include "State/DeviceState.h"
#include "State/Login.h"

namespace simulated_decoder {

struct RequestContext {
    const Request& request;
    Message& reply;
    HostSession& session;
    DeviceState& state;
    std::size_t credentials = 0; // source accounts deciphered along the way
};

// Carries out one request and fills in the reply. Any result but success has changed nothing.
using Handler = ErrorCode (*)(RequestContext& context);

// What a host must present before the handler is called.
enum class Access {
    Anyone,
    Session, // the session id of this connection
    Login,   // the session id and the token
};

struct RequestRow {
    std::string_view url;
    Access access;
    Handler handler;
};

// Null for an unknown request.
const RequestRow* FindRequest(std::string_view url);
std::vector<std::string_view> ServedUrls();

// Checks session and token, then calls the handler.
ErrorCode CarryOut(RequestContext& context);

// LoginRequests.cpp
ErrorCode DoOption(RequestContext& context);
ErrorCode DoLogin(RequestContext& context);
ErrorCode DoLogout(RequestContext& context);

// WindowRequests.cpp
ErrorCode DoCreateWindow(RequestContext& context);
ErrorCode DoModifyWindow(RequestContext& context);
ErrorCode DoSplitWindow(RequestContext& context);
ErrorCode DoWindowTop(RequestContext& context);
ErrorCode DoDestroyWindow(RequestContext& context);
ErrorCode DoWallClear(RequestContext& context);

// LayoutRequests.cpp
ErrorCode DoSetLayout(RequestContext& context);
ErrorCode DoGetLayout(RequestContext& context);
ErrorCode DoBind(RequestContext& context);
ErrorCode DoUnbind(RequestContext& context);

// MediaRequests.cpp
ErrorCode DoPlayMedia(RequestContext& context);
ErrorCode DoStopMedia(RequestContext& context);
ErrorCode DoSetWall(RequestContext& context);
ErrorCode DoPlaybackControl(RequestContext& context);

// SoundRequests.cpp
ErrorCode DoOpenSound(RequestContext& context);
ErrorCode DoCloseSound(RequestContext& context);
ErrorCode DoGetSound(RequestContext& context);

// GroupRequests.cpp
ErrorCode DoAddGroup(RequestContext& context);
ErrorCode DoSetOrGetGroup(RequestContext& context);
ErrorCode DoGetGroup(RequestContext& context);
ErrorCode DoDeleteGroup(RequestContext& context);
ErrorCode DoStartPolling(RequestContext& context);

// DisplayRequests.cpp
ErrorCode DoDrawBorder(RequestContext& context);
ErrorCode DoFullScreen(RequestContext& context);
ErrorCode DoSetWindowConfig(RequestContext& context);
ErrorCode DoGetWindowConfig(RequestContext& context);

// InfoRequests.cpp
ErrorCode DoGetSystemInfo(RequestContext& context);
ErrorCode DoGetBasicConfig(RequestContext& context);
ErrorCode DoGetChannels(RequestContext& context);

} // namespace simulated_decoder
