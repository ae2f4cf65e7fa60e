#pragma once
// A session between a fake host and a scripted decoder, on one thread: the decoder speaks whenever the
// session sleeps between two polls. Commands go in as bytes, request texts come out, replies go in, answers
// come out.

#include <deque>
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "DecoderKeys.h"
#include "FakeCommand.h"
#include "FakeNode.h"
#include "HostCalls.h"
#include "LinkTexts.h"
#include "Session/NetProtocolProcTWDECODERDevImp.h"

class SessionFixture : public testing::Test {
protected:
    SessionFixture();
    ~SessionFixture() override;

    // Answers the next request when it has been polled for polls times. %SEQ% in the text becomes the
    // request's number.
    void ReplyWith(const std::string& text, int polls = 1);
    // Runs on each poll of the session, instead of replies.
    std::function<void()> onPoll;
    // Runs before each retry of a send.
    std::function<void()> onRetry = [] {};

    // The receive callback, with whole frames, in the host's buffer or kept by the session.
    void Receive(const std::string& bytes, bool buffered = false);

    // Runs one command; the answer as FakeCommand::Answer tells it.
    std::string Run(unsigned int cmdID, const std::string& payload, bool hasReply = true);
    // Logs in with real keys, session "SID" and token "TOK"; forgets the frames sent and the logs.
    // The decoder's second key enciphers the credentials of video sources.
    void LogIn(const std::string& mediaKey = DecoderKeys().publicKey);

    // The last request's text, without its frame head; "" when nothing was sent.
    std::string LastRequest() const;
    // The text between the header and the end of the last request.
    std::string LastBody() const;

    FakeNode node;
    CNetProtocolProcTWDECODERDevImp session;
    int polls = 0;   // of 100 ms, since the last command was started
    int retries = 0; // sleeps of 1 ms

private:
    void OnSleep(unsigned int ms);

    std::deque<std::pair<std::string, int>> m_replies; // with the polls before them
};
