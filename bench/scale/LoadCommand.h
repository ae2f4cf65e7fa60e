#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

#include "CmdProcObject.h"
#include "LatencyHistogram.h"

namespace standin_host {
class CHostEvents;
}

namespace scale {

// What became of the commands of one phase. Any thread counts; the events hear when none is under way any
// more.
struct STally {
    explicit STally(standin_host::CHostEvents& hostEvents) : events(hostEvents) {}

    uint64_t UnderWay() const { return nQueued - nFinished; }
    uint64_t Answered() const { return nDone + nRefused + nTimedOut + nOtherFailures + nForeign; }

    standin_host::CHostEvents& events;
    std::atomic<uint64_t> nQueued{0};
    std::atomic<uint64_t> nFinished{0}; // nobody holds the command any more
    // The first answer of each command is one of these.
    std::atomic<uint64_t> nDone{0};     // with the answer that belongs to the command
    std::atomic<uint64_t> nRefused{0};  // by the decoder, which should not have
    std::atomic<uint64_t> nTimedOut{0}; // the plug-in saw no reply
    std::atomic<uint64_t> nOtherFailures{0};
    std::atomic<uint64_t> nForeign{0}; // answered as another command should be
    std::atomic<uint64_t> nLost{0};    // finished without an answer
    std::atomic<uint64_t> nDoubled{0}; // further answers
    // From queueing to answer, without the one polling step that every command takes.
    CLatencyHistogram latency;
};

// A host command that wants an answer and tallies it. Lives as long as somebody holds a reference.
class CLoadCommand final : public CCmdProcObject {
public:
    // Comes with its creator's reference, under kCreatorTag.
    CLoadCommand(unsigned int nCmdID, STally& tally);
    // Comes with the answer that it must get: these bytes, or the decoder's refusal when there are none. Any
    // other success is foreign.
    CLoadCommand(unsigned int nCmdID, STally& tally, std::optional<std::vector<uint8_t>> answer);
    CLoadCommand(const CLoadCommand&) = delete;
    CLoadCommand& operator=(const CLoadCommand&) = delete;

    unsigned int GetRequestCommand() const override { return m_nCmdID; }
    bool HasReply() const override { return true; }
    void AddReference(int nHolderTag) override;
    void DecReference(int nHolderTag) override;
    void ReplyRecord(const ORVA_NET_PROTOCOL::_kest_net_reply& reply) override;
    void ReplyBuffer(const char* pData, unsigned long nLen) override;

    static constexpr int kCreatorTag = 1;

private:
    ~CLoadCommand();

    void Count(std::atomic<uint64_t>& kind);

    const unsigned int m_nCmdID;
    STally& m_tally;
    const bool m_bChecked = false; // else any success will do
    const std::optional<std::vector<uint8_t>> m_answer;
    const std::chrono::steady_clock::time_point m_queued = std::chrono::steady_clock::now();
    std::atomic<int> m_nReferences{1};
    std::atomic<bool> m_bAnswered{false};
};

} // namespace scale
