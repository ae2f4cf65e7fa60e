#pragma once
// What the fuzz targets share: bytes as a script, checks that end the run, and a session on one thread whose
// link the target plays whenever the session sleeps.

#include <cstdlib>
#include <functional>
#include <string>
#include <string_view>

#include "FakeCommand.h"
#include "FakeHost.h"
#include "FakeNode.h"
#include "LinkTexts.h"
#include "NetProtocolProcTWDECODERDevImp.h"
#include "TestClock.h"

inline void Require(bool bHolds)
{
    if (!bHolds) {
        std::abort();
    }
}

// The fuzzer's bytes, taken from the front; zero and empty when they are used up.
class FuzzScript {
public:
    FuzzScript(const uint8_t* data, size_t size) : m_left(reinterpret_cast<const char*>(data), size) {}

    bool AtEnd() const { return m_left.empty(); }
    unsigned int Number() { return m_left.empty() ? 0 : static_cast<unsigned char>(Text(1)[0]); }
    std::string Text(size_t n)
    {
        const std::string text(m_left.substr(0, n));
        m_left.remove_prefix(text.size());
        return text;
    }
    std::string Rest() { return Text(m_left.size()); }

private:
    std::string_view m_left;
};

class FuzzSession {
public:
    // onSleep is called with the session instead of each sleep.
    FuzzSession(bool bBuffered, std::function<void(FuzzSession&)> onSleep) : m_bBuffered(bBuffered)
    {
        fake_host::SetLogRecording(false);
        m_session.Start(&m_node, nullptr, 0);
        test_clock::SetSleepHook([this, onSleep = std::move(onSleep)](unsigned int) { onSleep(*this); });
    }
    ~FuzzSession()
    {
        m_session.Stop();
        test_clock::SetSleepHook({});
    }
    FuzzSession(const FuzzSession&) = delete;
    FuzzSession& operator=(const FuzzSession&) = delete;

    void Run(unsigned int nCmdID, std::string payload, bool bHasReply = true)
    {
        FakeCommand command(nCmdID, bHasReply);
        m_session.ProcOneCommand(&command, reinterpret_cast<unsigned char*>(payload.data()),
                                 static_cast<unsigned int>(payload.size()));
        Require(command.nAnswers <= (bHasReply ? 1 : 0));
    }

    // As a host's socket does it: what is not consumed is offered again with what comes next.
    void Receive(const std::string& bytes)
    {
        m_kept += bytes;
        unsigned int nNeed = 0;
        const unsigned int nConsumed =
            m_session.OnSocketRecvData(0, m_kept.data(), static_cast<unsigned int>(m_kept.size()),
                                       m_bBuffered ? nullptr : &nNeed, nullptr);
        Require(nConsumed <= m_kept.size());
        m_kept.erase(0, nConsumed);
    }

    // The last request; "" before the first.
    std::string LastRequest() const { return m_node.frames.empty() ? "" : m_node.frames.back(); }

    // The decoder's answer to it.
    std::string Reply(const std::string& code, const std::string& headerTail, const std::string& body) const
    {
        const std::string request = LastRequest();
        return Frame(ReplyText(Element(request, "url"), Element(request, "seq"), code, headerTail, body));
    }

private:
    bool m_bBuffered;
    std::string m_kept;
    FakeNode m_node;
    CNetProtocolProcTWDECODERDevImp m_session;
};
