// A whole life of a session, written by the fuzzer: bytes from the link in any pieces, host commands with any
// payload, and replies, right or wrong, while a command waits.

#include <iterator>

#include "FuzzSession.h"

namespace {

class SessionLife {
public:
    explicit SessionLife(FuzzScript script) : m_script(script)
    {
        FuzzSession session(m_script.Number() % 2 == 1, [this](FuzzSession& s) { StepOfLink(s); });
        while (!m_script.AtEnd()) {
            if (m_script.Number() % 4 == 0) {
                Command(session);
            } else {
                StepOfLink(session);
            }
        }
    }

private:
    void Command(FuzzSession& session)
    {
        static constexpr unsigned int kIds[] = {0x101,   0x50000, 0x50001, 0x50002, 0x50003,
                                                0x50005, 0x50006, 0x50007, 0x50008};
        const unsigned int cmdID = kIds[m_script.Number() % std::size(kIds)];
        const bool hasReply = m_script.Number() % 8 != 0;
        session.Run(cmdID, m_script.Text(m_script.Number() * 4), hasReply);
    }

    void StepOfLink(FuzzSession& session)
    {
        switch (m_script.Number() % 4) {
        case 0:
            session.Receive(m_script.Text(m_script.Number()));
            break;
        case 1:
            session.Receive(Frame(m_script.Text(m_script.Number() * 2)));
            break;
        case 2:
            session.Receive(Reply(session));
            break;
        default: // silence
            break;
        }
    }

    // With a tail in header and body that the fuzzer writes.
    std::string Reply(const FuzzSession& session)
    {
        const std::string code = std::to_string(m_script.Number() % 4 == 3 ? m_script.Number() : 0);
        const std::string tail = m_script.Text(m_script.Number());
        return session.Reply(code, tail, m_script.Text(m_script.Number()));
    }

    FuzzScript m_script;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    {
        SessionLife life(FuzzScript(data, size));
    }
    Require(fake_host::LiveBuffers() == 0);
    return 0;
}
