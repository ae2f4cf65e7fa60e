#pragma once
// Wall commands after a login: the record that goes in, the request that goes out, the answer that comes
// back.

#include <sstream>
#include <string>

#include "CommandSamples.h"
#include "Crypto/tdcrypto.h"
#include "SessionFixture.h"

class WallCommandFixture : public SessionFixture {
protected:
    WallCommandFixture()
    {
        tdcrypto::GenerateRsaKey(m_mediaKeys);
        LogIn(m_mediaKeys[0]);
    }
    ~WallCommandFixture() override
    {
        for (const auto& log : fake_host::Logs()) {
            EXPECT_EQ(log.text.find(kSourceUser), std::string::npos) << log.text;
            EXPECT_EQ(log.text.find(kSourcePassword), std::string::npos) << log.text;
        }
    }

    // A command that the decoder accepts, and whose answer the host wants or not.
    void Check(const CommandSample& sample, bool hasReply = true)
    {
        EXPECT_EQ(Ask(sample, hasReply), hasReply ? sample.Answer() : "none");
        EXPECT_EQ(SentBody(), sample.body);
    }

    // The same command with another record, which comes back in its answer.
    void Check(const char* what, const char* handler, const std::string& record, const std::string& body)
    {
        SCOPED_TRACE(what);
        CommandSample sample = CommandSampleOf(handler);
        sample.record = record;
        sample.body = body;
        Check(sample);
    }

    // The host's answer to the command with this record when the decoder's reply has this body.
    std::string Ask(const char* handler, const std::string& record, const std::string& replyBody)
    {
        CommandSample sample = CommandSampleOf(handler);
        sample.record = record;
        sample.replyBody = replyBody;
        return Ask(sample, true);
    }

    // The body of the first request, with the credentials of video sources as the decoder reads them.
    std::string SentBody() const
    {
        return node.frames.empty() ? "" : InClear(BodyOf(node.frames.front()), m_mediaKeys[1]);
    }

private:
    std::string Ask(const CommandSample& sample, bool hasReply)
    {
        node.frames.clear();
        std::istringstream urls(sample.urls);
        for (std::string url; urls >> url;) {
            ReplyWith(
                ReplyText(url, "%SEQ%", "0", "<session>SID</session><token>TOK</token>", sample.replyBody));
        }
        const std::string answer = Run(sample.cmdID, sample.Payload(), hasReply);
        std::string sent;
        for (const std::string& frame : node.frames) {
            sent += (sent.empty() ? "" : " ") + Element(frame, "url");
            EXPECT_EQ(frame, Frame(frame.substr(8)));
        }
        EXPECT_EQ(sent, sample.urls);
        return answer;
    }
    std::string m_mediaKeys[2];
};
