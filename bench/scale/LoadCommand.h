#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

#include "CmdProcObject.h"
#include "LatencyHistogram.h"

namespace standin_host {
class HostEvents;
}

namespace scale {

// Outcomes of the commands of one phase. Any thread counts; the events are told when none is under way any
// more.
struct Tally {
    explicit Tally(standin_host::HostEvents& hostEvents) : events(hostEvents) {}

    uint64_t UnderWay() const { return queued - finished; }
    uint64_t Answered() const { return done + refused + timedOut + otherFailures + foreign; }

    standin_host::HostEvents& events;
    std::atomic<uint64_t> queued{0};
    std::atomic<uint64_t> finished{0}; // nobody holds the command any more
    // The first answer of each command is one of these.
    std::atomic<uint64_t> done{0};     // with the command's proper answer
    std::atomic<uint64_t> refused{0};  // by the decoder, which should not have
    std::atomic<uint64_t> timedOut{0}; // the plug-in saw no reply
    std::atomic<uint64_t> otherFailures{0};
    std::atomic<uint64_t> foreign{0}; // with another command's answer
    std::atomic<uint64_t> lost{0};    // finished without an answer
    std::atomic<uint64_t> doubled{0}; // further answers
    // From queueing to answer, without the one polling step that every command takes.
    LatencyHistogram latency;
};

// A host command that wants an answer and tallies it. Lives until the last reference is released.
class LoadCommand final : public CCmdProcObject {
public:
    // Starts with its creator's reference, under kCreatorTag.
    LoadCommand(unsigned int cmdID, Tally& tally);
    // The same, with the answer that it must get: these bytes, or the decoder's refusal if none. Any other
    // success is foreign.
    LoadCommand(unsigned int cmdID, Tally& tally, std::optional<std::vector<uint8_t>> answer);
    LoadCommand(const LoadCommand&) = delete;
    LoadCommand& operator=(const LoadCommand&) = delete;

    unsigned int GetRequestCommand() const override { return m_cmdID; }
    bool HasReply() const override { return true; }
    void AddReference(int holderTag) override;
    void DecReference(int holderTag) override;
    void ReplyRecord(const ORVA_NET_PROTOCOL::_kest_net_reply& reply) override;
    void ReplyBuffer(const char* data, unsigned long len) override;

    static constexpr int kCreatorTag = 1;

private:
    ~LoadCommand();

    void Count(std::atomic<uint64_t>& kind);

    const unsigned int m_cmdID;
    Tally& m_tally;
    const bool m_checked = false; // else any success will do
    const std::optional<std::vector<uint8_t>> m_answer;
    const std::chrono::steady_clock::time_point m_queued = std::chrono::steady_clock::now();
    std::atomic<int> m_references{1};
    std::atomic<bool> m_answered{false};
};

} // namespace scale
