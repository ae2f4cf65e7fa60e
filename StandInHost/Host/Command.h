#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "CmdProcObject.h"
#include "Host/Frames/ExchangeWatch.h"
#include "Mutex.h"

namespace standin_host {

class HostEvents;

// The one answer to a command, as the plug-in gave it.
struct HostAnswer {
    enum class Kind { Buffer, Failure };

    Kind kind;
    uint32_t hostCode; // the failure code, 0 for a buffer
    std::vector<uint8_t> bytes;
};

// A host command. Created with one reference, the creator's, which HostCommandHolder releases; any other
// reference belongs to a holder for which the command still runs or waits.
class HostCommand final : public CCmdProcObject {
public:
    // events is told of the answer and of each released reference; null when nobody listens.
    HostCommand(unsigned int cmdID, bool hasReply, HostEvents* events);
    HostCommand(const HostCommand&) = delete;
    HostCommand& operator=(const HostCommand&) = delete;

    unsigned int GetRequestCommand() const override { return m_cmdID; }
    bool HasReply() const override { return m_hasReply; }
    void AddReference(int holderTag) override;
    void DecReference(int holderTag) override;
    void ReplyRecord(const ORVA_NET_PROTOCOL::_kest_net_reply& reply) override;
    void ReplyBuffer(const char* data, unsigned long len) override;

    // The connection on which the command will run; before it is queued.
    void WatchExchanges(std::shared_ptr<const ExchangeWatch> exchanges)
    {
        m_exchanges = std::move(exchanges);
    }

    std::optional<HostAnswer> Answer() const;
    // The last exchange before the answer; without an answer, the last one so far. Empty where nobody
    // watches.
    Exchange LastExchange() const;
    // True when only the creator holds the command: no answer can come any more.
    bool IsReleased() const { return m_references.load(std::memory_order_acquire) == 1; }

    static constexpr int kCreatorTag = 1;

    // Live commands, and rule violations (a second answer, an answer that nobody waits for, unpaired tags),
    // in the whole process.
    static long Live();
    static long Misuses();

private:
    ~HostCommand();

    void Record(HostAnswer answer);
    void KeepExchange();

    const unsigned int m_cmdID;
    const bool m_hasReply;
    HostEvents* const m_events;
    std::atomic<int> m_references{1};
    std::atomic<long> m_tagSum{kCreatorTag}; // tags of AddReference minus tags of DecReference
    std::shared_ptr<const ExchangeWatch> m_exchanges;
    mutable CMutex m_lock;
    std::optional<HostAnswer> m_answer TVWALL_GUARDED_BY(m_lock);
    std::optional<Exchange> m_exchange TVWALL_GUARDED_BY(m_lock); // once answered or released
};

struct ReleaseCommand {
    void operator()(HostCommand* command) const { command->DecReference(HostCommand::kCreatorTag); }
};
using HostCommandHolder = std::unique_ptr<HostCommand, ReleaseCommand>;

inline HostCommandHolder MakeCommand(unsigned int cmdID, bool hasReply, HostEvents* events)
{
    return HostCommandHolder(new HostCommand(cmdID, hasReply, events));
}

} // namespace standin_host
