#pragma once

#include <memory>

#include "Link/DeviceReply.h"
#include "Link/ReplyHandOver.h"

class CCmdProcObject;

// What the session knows about one running command; on the stack of the function that runs it. A host may run
// a second command from inside the answer to the first, which then waits as the outer one. Worker thread
// only.
struct S_RunningCommand {
    CCmdProcObject* const pCommand;             // the host's
    S_RunningCommand* const pOuter;             // null for the outermost
    bool bAnswered = false;                     // its answer has been given or withheld
    bool bGivenUp = false;                      // the session was stopped while its request was composed
    std::unique_ptr<S_DeviceReply> pReply{};    // the reply to its last exchange
    std::unique_ptr<CDeviceReply> pOpenReply{}; // the same, opened on first use
};
