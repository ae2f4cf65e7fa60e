#pragma once
// A session between a fake host and a scripted decoder, on one thread: the decoder speaks whenever the
// session sleeps between two polls. Commands go in as bytes, request texts come out, replies go in, answers
// come out.

#include <deque>
#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "FakeCommand.h"
#include "FakeNode.h"
#include "NetProtocolProcTWDECODERDevImp.h"

// --- the decoder's texts ---

std::string Frame(const std::string& payload);
// <td_command> with url, seq, errorcode, the header's tail and the body.
std::string ReplyText(const std::string& url, const std::string& seq, const std::string& errorcode = "0",
                      const std::string& headerTail = "", const std::string& body = "");
// The text between <name> and </name>, "" for <name/>, "?" when neither is there.
std::string Element(const std::string& xml, const std::string& name);

// --- the host's bytes ---

// Little-endian bytes of numbers, and texts as they are.
class Bytes {
public:
    Bytes& U16(unsigned int n) { return Put(n, 2); }
    Bytes& U32(unsigned long n) { return Put(n, 4); }
    Bytes& Zeros(size_t n) { return Text(std::string(n, '\0')); }
    Bytes& Text(const std::string& text)
    {
        m_bytes += text;
        return *this;
    }
    operator std::string() const { return m_bytes; }

private:
    Bytes& Put(unsigned long n, int nBytes)
    {
        for (int i = 0; i < nBytes; ++i) {
            m_bytes += static_cast<char>(n >> (8 * i));
        }
        return *this;
    }
    std::string m_bytes;
};

// The option envelope with its record.
std::string Option(unsigned int nOptType, const std::string& record);
std::string LoginPayload(const std::string& user, const std::string& password);

// The payload of a login is 744 bytes; the keys are a real pair, made once.
struct TestKeys {
    std::string publicKey;
    std::string privateKey;
};
const TestKeys& DecoderKeys();

class SessionFixture : public testing::Test {
protected:
    SessionFixture();
    ~SessionFixture() override;

    // Answers the next request when it has been polled for nPolls times. %SEQ% in the text becomes the
    // request's number.
    void ReplyWith(const std::string& text, int nPolls = 1);
    // Runs on each poll of the session, instead of replies.
    std::function<void()> onPoll;

    // The receive callback, with whole frames.
    void Receive(const std::string& bytes);

    // Runs one command; the answer as FakeCommand::Answer tells it.
    std::string Run(unsigned int nCmdID, const std::string& payload, bool bHasReply = true);
    // Logs in with real keys, session "SID" and token "TOK"; forgets the frames sent and the logs.
    void LogIn();

    // The last request's text, without its frame head; "" when nothing was sent.
    std::string LastRequest() const;
    // The text between the header and the end of the last request.
    std::string LastBody() const;

    FakeNode node;
    CNetProtocolProcTWDECODERDevImp session;
    int nPolls = 0;   // of 100 ms, since the last command was started
    int nRetries = 0; // sleeps of 1 ms

private:
    struct Scripted {
        std::string text;
        int nPolls;
    };
    void OnSleep(unsigned int ms);

    std::deque<Scripted> m_replies;
};
