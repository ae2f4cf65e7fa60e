#pragma once
// A session on one thread whose link the fuzz target plays whenever the session sleeps.

#include <functional>
#include <string>

#include "DecoderKeys.h"
#include "FakeCommand.h"
#include "FakeHost.h"
#include "FakeNode.h"
#include "FuzzScript.h"
#include "HostCalls.h"
#include "LinkTexts.h"
#include "Session/NetProtocolProcTWDECODERDevImp.h"
#include "TestClock.h"

class FuzzSession {
public:
    // onSleep is called with the session instead of each sleep.
    FuzzSession(bool buffered, std::function<void(FuzzSession&)> onSleep) : m_buffered(buffered)
    {
        ObserveLogs();
        m_session.Start(&m_node, nullptr, 0);
        test_clock::SetSleepHook([this, onSleep = std::move(onSleep)](unsigned int ms) {
            Observe(std::to_string(ms));
            onSleep(*this);
        });
    }
    ~FuzzSession()
    {
        m_session.Stop();
        test_clock::SetSleepHook({});
        for (const auto& frame : m_node.frames) {
            Observe(g_outcome == nullptr ? "" : InClear(frame, DecoderKeys().privateKey)); // takes long
        }
        for (const auto& told : m_node.notifications) {
            Observe(std::to_string(told.cmdID) + ' ' + std::to_string(told.optType) + ' ' +
                    std::to_string(told.len) + ' ' + std::to_string(told.destination.Data1) + told.data);
        }
        ObserveLogs();
    }
    FuzzSession(const FuzzSession&) = delete;
    FuzzSession& operator=(const FuzzSession&) = delete;

    void Run(unsigned int cmdID, const std::string& payload, bool hasReply = true)
    {
        FakeCommand command(cmdID, hasReply);
        Process(m_session, command, payload);
        Require(command.answers <= (hasReply ? 1 : 0));
        Observe(command.Answer() + (m_session.IsOnline() ? " online" : " offline"));
    }

    // As a host's socket does it: what is not consumed is offered again with what comes next.
    void Receive(const std::string& bytes)
    {
        m_kept += bytes;
        const unsigned int consumed = Offer(m_session, m_kept, m_buffered);
        Require(consumed <= m_kept.size());
        m_kept.erase(0, consumed);
        Observe(std::to_string(m_kept.size()));
    }

    // What was sent so far is not observed.
    void ForgetRequests() { m_node.frames.clear(); }

    // The last request; "" before the first.
    std::string LastRequest() const { return m_node.frames.empty() ? "" : m_node.frames.back(); }

    // The decoder's answer to it.
    std::string Reply(const std::string& code, const std::string& headerTail, const std::string& body) const
    {
        const std::string request = LastRequest();
        return Frame(ReplyText(Element(request, "url"), Element(request, "seq"), code, headerTail, body));
    }

private:
    bool m_buffered;
    std::string m_kept;
    FakeNode m_node;
    CNetProtocolProcTWDECODERDevImp m_session;
};
