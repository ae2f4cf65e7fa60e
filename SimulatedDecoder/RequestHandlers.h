#pragma once
// What the decoder does with each kind of request.

#include <string_view>

#include "ErrorCode.h"
#include "Login.h"
#include "Message.h"
#include "Wall.h"

namespace simulated_decoder {

struct RequestContext {
    const Request& request;
    Message& reply;
    HostSession& session;
    Wall& wall;
};

// Carries out one request and puts into the reply what belongs there. Anything but success has changed
// nothing.
using Handler = ErrorCode (*)(RequestContext& context);

// What a host must have shown before the handler is called.
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

// Null when the decoder serves no such request.
const RequestRow* FindRequest(std::string_view url);

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

} // namespace simulated_decoder
