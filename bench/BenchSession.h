#pragma once

#include <algorithm>
#include <string>

#include <benchmark/benchmark.h>

#include "CmdProcObject.h"
#include "FakeHost.h"
#include "LinkTexts.h"
#include "NetNode.h"
#include "Ratio.h"
#include "Session/NetProtocolProcTWDECODERDevImp.h"
#include "TestClock.h"

// A link that keeps only the envelope of a request: what a host does with the bytes is not measured.
class BenchNode final : public CNetNode {
public:
    void DeliverCommand(unsigned int, CCmdProcParam*) override {}
    bool SendData(const void* data, unsigned long len) override
    {
        constexpr unsigned long kEnvelopeLen = 300;
        envelope.assign(static_cast<const char*>(data), std::min(len, kEnvelopeLen));
        requestLen = len;
        return true;
    }
    bool IsDropRecvData() override { return false; }
    void Disconnect() override {}
    GUID GetNodeID() const override { return {}; }

    std::string envelope; // of the last request
    unsigned long requestLen = 0;
};

// Takes the answer without copying it.
class BenchCommand final : public CCmdProcObject {
public:
    explicit BenchCommand(unsigned int cmdID) : m_cmdID(cmdID) {}

    unsigned int GetRequestCommand() const override { return m_cmdID; }
    bool HasReply() const override { return true; }
    void AddReference(int) override {}
    void DecReference(int) override {}
    void ReplyRecord(const ORVA_NET_PROTOCOL::_kest_net_reply&) override {}
    void ReplyBuffer(const char* data, unsigned long len) override
    {
        benchmark::DoNotOptimize(data);
        succeeded = true;
        answerLen = len;
    }

    bool succeeded = false;
    size_t answerLen = 0;

private:
    unsigned int m_cmdID;
};

// A logged-in session whose decoder gives every request, the login included, the same reply at the first
// poll.
class BenchSession {
public:
    explicit BenchSession(const std::string& body)
        : m_text(ReplyText("dologin", std::string(kSeqWidth, '0'), "0", "", body))
    {
        fake_host::SetLogRecording(false);
        m_session.Start(&m_node, nullptr, 0);
        test_clock::SetSleepHook([this](unsigned int) { Reply(); });
        std::string login = LoginPayload("admin", "secret");
        Run(0x101, login);
    }
    ~BenchSession() { test_clock::SetSleepHook({}); }
    BenchSession(const BenchSession&) = delete;
    BenchSession& operator=(const BenchSession&) = delete;

    // Returns the seconds until the reply has been received.
    double Run(unsigned int cmdID, std::string& payload)
    {
        const double start = ThreadSeconds();
        BenchCommand command(cmdID);
        m_session.ProcOneCommand(&command, reinterpret_cast<unsigned char*>(payload.data()),
                                 static_cast<unsigned int>(payload.size()));
        m_succeeded = command.succeeded;
        m_answerLen = command.answerLen;
        return m_received - start;
    }

    // Of the last command.
    bool Succeeded() const { return m_succeeded; }
    size_t RequestLen() const { return m_node.requestLen; }
    size_t AnswerLen() const { return m_answerLen; }
    const std::string& ReplySent() const { return m_text; }

private:
    static constexpr size_t kSeqWidth = 10; // of the longest number, so that all replies have the same length

    void Reply()
    {
        const std::string seq = Element(m_node.envelope, "seq");
        m_text.replace(m_text.find("</seq>") - seq.size(), seq.size(), seq);
        const std::string frame = Frame(m_text);
        unsigned int need = 0;
        m_session.OnSocketRecvData(0, frame.data(), static_cast<unsigned int>(frame.size()), &need, nullptr);
        m_received = ThreadSeconds();
    }

    std::string m_text;
    BenchNode m_node;
    CNetProtocolProcTWDECODERDevImp m_session;
    double m_received = 0;
    bool m_succeeded = false;
    size_t m_answerLen = 0;
};
