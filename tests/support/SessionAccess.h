#pragma once
// What the session keeps and none of its seams shows.

#include <string>

#include <gtest/gtest.h>

#include "Session/NetProtocolProcTWDECODERDevImp.h"

class SessionAccess {
public:
    using Session = CNetProtocolProcTWDECODERDevImp;

    static bool WaitProc(Session& session, unsigned int seq, unsigned int ms)
    {
        return session.WaitProc(seq, ms);
    }
    // The text of the last message, and the number of the last one that had any.
    static std::string Stored(const Session& session)
    {
        EXPECT_EQ(session.m_BufReplayValidLen, session.m_BufValidLenReply);
        return {session.m_pBufferReply, session.m_BufReplayValidLen};
    }
    static int LastNumber(const Session& session) { return session.m_recvCmdID; }
};
