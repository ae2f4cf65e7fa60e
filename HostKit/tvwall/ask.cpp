#include "tvwall/ask.h"

#include <atomic>
#include <memory>
#include <utility>

#include "CmdProcObject.h"
#include "tvwall/answers.h"

namespace tvwall {

namespace {

constexpr int kMaker = 0; // holder tag of the first reference; the queue's is another

// Keeps the outcome until the last reference is released, then tells it.
class AskedCommand final : public CCmdProcObject {
public:
    explicit AskedCommand(std::uint32_t id) : m_id(id) {}

    std::future<Outcome> Future() { return m_promise.get_future(); }

    unsigned int GetRequestCommand() const override { return m_id; }
    bool HasReply() const override { return true; }
    void AddReference(int) override { ++m_references; }
    void DecReference(int) override
    {
        if (--m_references == 0) {
            const std::unique_ptr<AskedCommand> self(this);
            m_promise.set_value(std::move(m_outcome));
        }
    }
    void ReplyRecord(const ORVA_NET_PROTOCOL::_kest_net_reply& reply) override
    {
        m_outcome = {Outcome::Kind::Failed, reply.dwResult, {}};
    }
    void ReplyBuffer(const char* bytes, unsigned long length) override
    {
        if (length != 0) {
            m_outcome.answer.assign(bytes, length);
        }
        m_outcome.kind = Outcome::Kind::Done;
    }

private:
    const std::uint32_t m_id;
    std::atomic<int> m_references{1};
    Outcome m_outcome;
    std::promise<Outcome> m_promise;
};

struct Release {
    void operator()(AskedCommand* asked) const { asked->DecReference(kMaker); }
};

} // namespace

const char* Outcome::Text() const
{
    return kind == Kind::Done ? "done" : kind == Kind::Failed ? Meaning(failure) : "no answer";
}

std::future<Outcome> Ask(CNetProtocolProc& processor, const Command& command)
{
    const std::unique_ptr<AskedCommand, Release> asked(new AskedCommand(command.id));
    std::future<Outcome> future = asked->Future();
    // The queue copies the payload; it does not write to it.
    processor.AddOneCmd(asked.get(), const_cast<unsigned char*>(command.payload.data()),
                        static_cast<unsigned int>(command.payload.size()));
    return future;
}

} // namespace tvwall
