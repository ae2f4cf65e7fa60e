#pragma once

#include <memory>

#include "Link/DeviceReply.h"
#include "Link/ReplyHandOver.h"

class CCmdProcObject;

// What the session knows of one running command, on the stack of whoever runs it. A host may run a second
// command from inside the answer to the first one; then the first one waits as the outer of the second.
// Worker thread only.
struct S_RunningCommand {
    CCmdProcObject* const pCommand;             // the host's
    S_RunningCommand* const pOuter;             // null without one
    bool bAnswered = false;                     // it has its answer, or has been refused one
    bool bGivenUp = false;                      // the session was stopped while its request was composed
    std::unique_ptr<S_DeviceReply> pReply{};    // of its last exchange
    std::unique_ptr<CDeviceReply> pOpenReply{}; // likewise, once somebody has asked for it
};
