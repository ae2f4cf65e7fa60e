// A whole life of a session, written by the fuzzer: bytes from the link in any pieces, host commands with any
// payload, and replies, right or wrong, while a command waits.

#include <string>

#include "FakeCommand.h"
#include "FakeHost.h"
#include "FakeNode.h"
#include "LinkTexts.h"
#include "NetProtocolProcTWDECODERDevImp.h"
#include "TestClock.h"

namespace {

class Script {
public:
    Script(const uint8_t* data, size_t size) : m_left(reinterpret_cast<const char*>(data), size) {}

    bool AtEnd() const { return m_left.empty(); }
    unsigned int Number() { return m_left.empty() ? 0 : static_cast<unsigned char>(Text(1)[0]); }
    std::string Text(size_t n)
    {
        const std::string text(m_left.substr(0, n));
        m_left.remove_prefix(text.size());
        return text;
    }

private:
    std::string_view m_left;
};

class SessionLife {
public:
    explicit SessionLife(Script script) : m_script(script), m_bBuffered(m_script.Number() % 2 == 1)
    {
        m_session.Start(&m_node, nullptr, 0);
        test_clock::SetSleepHook([this](unsigned int) { StepOfLink(); });
        while (!m_script.AtEnd()) {
            if (m_script.Number() % 4 == 0) {
                Command();
            } else {
                StepOfLink();
            }
        }
        m_session.Stop();
    }

private:
    void Command()
    {
        static constexpr unsigned int IDS[] = {0x101, 0x50000, 0x50001, 0x50002, 0x50003, 0x50006};
        FakeCommand command(IDS[m_script.Number() % std::size(IDS)], m_script.Number() % 8 != 0);
        std::string payload = m_script.Text(m_script.Number() * 4);
        m_session.ProcOneCommand(&command, reinterpret_cast<unsigned char*>(payload.data()),
                                 static_cast<unsigned int>(payload.size()));
        if (command.nAnswers > (command.HasReply() ? 1 : 0)) {
            __builtin_trap();
        }
    }

    void StepOfLink()
    {
        switch (m_script.Number() % 4) {
        case 0:
            Receive(m_script.Text(m_script.Number()));
            break;
        case 1:
            Receive(Frame(m_script.Text(m_script.Number() * 2)));
            break;
        case 2:
            Receive(Reply());
            break;
        default: // silence
            break;
        }
    }

    // To the last request, with a tail in header and body that the fuzzer writes.
    std::string Reply()
    {
        if (m_node.frames.empty()) {
            return Frame("");
        }
        const std::string& request = m_node.frames.back();
        const std::string code = std::to_string(m_script.Number() % 4 == 3 ? m_script.Number() : 0);
        const std::string tail = m_script.Text(m_script.Number());
        return Frame(ReplyText(Element(request, "url"), Element(request, "seq"), code, tail,
                               m_script.Text(m_script.Number())));
    }

    void Receive(const std::string& bytes)
    {
        m_kept += bytes;
        unsigned int nNeed = 0;
        const unsigned int nConsumed =
            m_session.OnSocketRecvData(0, m_kept.data(), static_cast<unsigned int>(m_kept.size()),
                                       m_bBuffered ? nullptr : &nNeed, nullptr);
        m_kept.erase(0, nConsumed);
    }

    Script m_script;
    bool m_bBuffered;
    std::string m_kept;
    FakeNode m_node;
    CNetProtocolProcTWDECODERDevImp m_session;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    fake_host::SetLogRecording(false);
    {
        SessionLife life(Script(data, size));
    }
    if (fake_host::LiveBuffers() != 0) {
        __builtin_trap();
    }
    return 0;
}
