#include "SessionFixture.h"

#include "TestClock.h"

using namespace ORVA_NET_PROTOCOL;

SessionFixture::SessionFixture()
{
    fake_host::Reset();
    test_clock::SetSleepHook([this](unsigned int ms) { OnSleep(ms); });
    session.Start(&node, nullptr, 0);
}

SessionFixture::~SessionFixture() { test_clock::SetSleepHook({}); }

void SessionFixture::OnSleep(unsigned int ms)
{
    if (ms != 100) {
        EXPECT_EQ(ms, 1U);
        ++retries;
        onRetry();
        return;
    }
    ++polls;
    if (onPoll) {
        onPoll();
    } else if (!m_replies.empty() && --m_replies.front().second <= 0) {
        std::string text = m_replies.front().first;
        m_replies.pop_front();
        if (const auto at = text.find("%SEQ%"); at != std::string::npos) {
            text.replace(at, 5, Element(LastRequest(), "seq"));
        }
        Receive(Frame(text));
    }
}

void SessionFixture::ReplyWith(const std::string& text, int pollsBefore)
{
    m_replies.emplace_back(text, pollsBefore);
}

void SessionFixture::Receive(const std::string& bytes, bool buffered)
{
    EXPECT_EQ(Offer(session, bytes, buffered), bytes.size());
}

std::string SessionFixture::Run(unsigned int cmdID, const std::string& payload, bool hasReply)
{
    polls = 0;
    FakeCommand command(cmdID, hasReply);
    Process(session, command, payload);
    return command.Answer();
}

void SessionFixture::LogIn(const std::string& mediaKey)
{
    ReplyWith(
        ReplyText("dooption", "%SEQ%", "0", "<session>SID</session>",
                  "<pubkey1>" + DecoderKeys().publicKey + "</pubkey1><pubkey2>" + mediaKey + "</pubkey2>"));
    ReplyWith(ReplyText("dologin", "%SEQ%", "0", "<token>TOK</token>"));
    ASSERT_EQ(Run(KEST_CMD_REQUEST_LOGIN, LoginPayload("admin", "secret")).substr(0, 6), "buffer");
    node.frames.clear();
    fake_host::Reset();
}

std::string SessionFixture::LastRequest() const
{
    return node.frames.empty() ? "" : node.frames.back().substr(8);
}

std::string SessionFixture::LastBody() const { return BodyOf(LastRequest()); }
