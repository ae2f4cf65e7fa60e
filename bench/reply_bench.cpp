// Long replies, through the real handlers, beside a bare parse of the same text with tinyxml2: the counter
// "vs_parse" is the ratio of the two. What counts of a command is the worker's part from the reply on; the
// request, the receive thread's part and what the host does with the answer do not.

#include <malloc.h>
#include <string>

#include <benchmark/benchmark.h>
#include <tinyxml2.h>

#include "CmdProcObject.h"
#include "FakeHost.h"
#include "FakeNode.h"
#include "LinkTexts.h"
#include "NetProtocolProcTWDECODERDevImp.h"
#include "Ratio.h"
#include "TestClock.h"

namespace {

// Takes the answer without a copy.
class Command final : public CCmdProcObject {
public:
    explicit Command(unsigned int nCmdID) : m_nCmdID(nCmdID) {}

    unsigned int GetRequestCommand() const override { return m_nCmdID; }
    bool HasReply() const override { return true; }
    void AddReference(int) override {}
    void DecReference(int) override {}
    void ReplyRecord(const ORVA_NET_PROTOCOL::_kest_net_reply&) override {}
    void ReplyBuffer(const char* pData, unsigned long nLen) override
    {
        benchmark::DoNotOptimize(pData);
        nAnswerLen = nLen;
    }

    size_t nAnswerLen = 0;

private:
    unsigned int m_nCmdID;
};

// A logged-in session whose decoder gives the same reply to every request, at the first poll.
class Session {
public:
    explicit Session(const std::string& body)
        : m_text(ReplyText("getwalllayout", std::string(SEQ_WIDTH, '0'), "0", "", body))
    {
        fake_host::SetLogRecording(false);
        m_session.Start(&m_node, nullptr, 0);
        test_clock::SetSleepHook([this](unsigned int) { Reply(); });
        Run(0x101, LoginPayload("admin", "secret"));
    }
    ~Session() { test_clock::SetSleepHook({}); }

    const std::string& Text() const { return m_text; }
    size_t AnswerLen() const { return m_nAnswerLen; }

    // Returns the seconds until the reply has been received.
    double Run(unsigned int nCmdID, std::string payload)
    {
        const double start = ThreadSeconds();
        m_node.frames.clear();
        Command command(nCmdID);
        m_session.ProcOneCommand(&command, reinterpret_cast<unsigned char*>(payload.data()),
                                 static_cast<unsigned int>(payload.size()));
        m_nAnswerLen = command.nAnswerLen;
        return m_received - start;
    }

private:
    static constexpr size_t SEQ_WIDTH = 10; // of the longest number, so that all replies are as long

    void Reply()
    {
        const std::string seq = Element(m_node.frames.back(), "seq");
        m_text.replace(m_text.find("</seq>") - seq.size(), seq.size(), seq);
        const std::string frame = Frame(m_text);
        unsigned int nNeed = 0;
        m_session.OnSocketRecvData(0, frame.data(), static_cast<unsigned int>(frame.size()), &nNeed, nullptr);
        m_received = ThreadSeconds();
    }

    std::string m_text;
    FakeNode m_node;
    CNetProtocolProcTWDECODERDevImp m_session;
    double m_received = 0;
    size_t m_nAnswerLen = 0;
};

// A list with the same item again and again.
std::string List(const std::string& name, const std::string& item, int64_t nItems)
{
    std::string text = "<" + name + ">";
    for (int64_t i = 0; i < nItems; ++i) {
        text += item;
    }
    return text + "</" + name + ">";
}

void RunBeside(benchmark::State& state, const std::string& body, unsigned int nCmdID,
               const std::string& payload, size_t nItemLen)
{
    // Memory that is freed stays with the process, as it does in a host's large heap; otherwise the kernel's
    // work on pages that come and go would be measured on both sides.
    mallopt(M_TRIM_THRESHOLD, 1 << 28);
    mallopt(M_MMAP_THRESHOLD, 1 << 25);
    Session session(body);
    session.Run(nCmdID, payload);
    if (session.AnswerLen() < static_cast<size_t>(state.range(0)) * nItemLen) {
        state.SkipWithError("the answer does not hold every item");
        return;
    }
    RunRatio(
        state, "vs_parse", [&] { return session.Run(nCmdID, payload); },
        [&] {
            tinyxml2::XMLDocument document;
            document.Parse(session.Text().data(), session.Text().size());
            benchmark::DoNotOptimize(document.RootElement());
        });
    state.SetComplexityN(state.range(0));
}

void GetWallLayout(benchmark::State& state)
{
    const std::string item = "<item><id>5</id><name>left</name><coordinate><xpos>0</xpos><ypos>1</ypos>"
                             "</coordinate></item>";
    RunBeside(state, "<row>4</row><col>4</col>" + List("td_channellist", item, state.range(0)), 0x50006, "",
              268);
}

void GetAudioConfig(benchmark::State& state)
{
    const std::string item =
        "<item><id>5</id><td_subwindowlist><item><index>0</index><channelid>12</channelid>"
        "</item></td_subwindowlist></item>";
    RunBeside(state, List("td_windowlist", item, state.range(0)), 0x50000, Option(0x60016, ""), 16);
}

BENCHMARK(GetWallLayout)->RangeMultiplier(16)->Range(16, 4096)->Complexity(benchmark::oN)->UseManualTime();
BENCHMARK(GetAudioConfig)->RangeMultiplier(16)->Range(16, 4096)->Complexity(benchmark::oN)->UseManualTime();

} // namespace
