#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "CmdProcObject.h"
#include "Mutex.h"

namespace standin_host {

class CHostEvents;

// The one answer to a command, as the plug-in gave it.
struct SAnswer {
    enum class EKind { Buffer, Failure };

    EKind kind;
    uint32_t nCode; // the failure code, 0 for a buffer
    std::vector<uint8_t> bytes;
};

// A host command. Created with one reference, the creator's, that CHostCommandHolder gives back; every other
// reference is a holder's that the command still runs or waits for.
class CHostCommand final : public CCmdProcObject {
public:
    // pEvents hears of the answer and of each reference that is given back; null when nobody listens.
    CHostCommand(unsigned int nCmdID, bool bHasReply, CHostEvents* pEvents);
    CHostCommand(const CHostCommand&) = delete;
    CHostCommand& operator=(const CHostCommand&) = delete;

    unsigned int GetRequestCommand() const override { return m_nCmdID; }
    bool HasReply() const override { return m_bHasReply; }
    void AddReference(int nHolderTag) override;
    void DecReference(int nHolderTag) override;
    void ReplyRecord(const ORVA_NET_PROTOCOL::_kest_net_reply& reply) override;
    void ReplyBuffer(const char* pData, unsigned long nLen) override;

    std::optional<SAnswer> Answer() const;
    // True when nobody but the creator holds the command: no answer can come any more.
    bool IsReleased() const { return m_nReferences.load(std::memory_order_acquire) == 1; }

    static constexpr int kCreatorTag = 1;

    // Commands that are alive, and how often the rules were broken (a second answer, an answer that nobody
    // waits for, tags that do not pair), in the whole process.
    static long Live();
    static long Misuses();

private:
    ~CHostCommand();

    void Record(SAnswer answer);

    const unsigned int m_nCmdID;
    const bool m_bHasReply;
    CHostEvents* const m_pEvents;
    std::atomic<int> m_nReferences{1};
    std::atomic<long> m_nTagSum{kCreatorTag}; // tags of AddReference minus tags of DecReference
    mutable CMutex m_lock;
    std::optional<SAnswer> m_answer TVWALL_GUARDED_BY(m_lock);
};

struct SReleaseCommand {
    void operator()(CHostCommand* pCommand) const { pCommand->DecReference(CHostCommand::kCreatorTag); }
};
using CHostCommandHolder = std::unique_ptr<CHostCommand, SReleaseCommand>;

inline CHostCommandHolder MakeCommand(unsigned int nCmdID, bool bHasReply, CHostEvents* pEvents)
{
    return CHostCommandHolder(new CHostCommand(nCmdID, bHasReply, pEvents));
}

} // namespace standin_host
