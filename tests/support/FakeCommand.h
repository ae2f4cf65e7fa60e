#pragma once

#include <atomic>
#include <functional>
#include <string>
#include <vector>

#include "AllocationFault.h"
#include "CmdProcObject.h"

// A host command that records its references and every answer it gets.
class FakeCommand final : public CCmdProcObject {
public:
    explicit FakeCommand(unsigned int nCmdID, bool bHasReply = true)
        : m_nCmdID(nCmdID), m_bHasReply(bHasReply)
    {
    }

    unsigned int GetRequestCommand() const override { return m_nCmdID; }
    bool HasReply() const override { return m_bHasReply; }
    void AddReference(int nHolderTag) override { Count(nHolderTag, 1); }
    void DecReference(int nHolderTag) override { Count(nHolderTag, -1); }
    void ReplyRecord(const ORVA_NET_PROTOCOL::_kest_net_reply& reply) override
    {
        ++nAnswers;
        bFailed = true;
        record = reply;
        onAnswer();
    }
    void ReplyBuffer(const char* pData, unsigned long nLen) override
    {
        const allocation_fault::Pause pause;
        ++nAnswers;
        buffer.assign(pData == nullptr ? "" : pData, nLen);
        onAnswer();
    }

    // What was answered, in one text: "none", "failure 20000013", "buffer <hex>", or "twice".
    std::string Answer() const;

    std::function<void()> onAnswer = [] {};                                 // runs inside the answer
    std::function<void(const char* what)> onReference = [](const char*) {}; // "take", "give back"
    std::atomic<int> nAnswers = 0;
    bool bFailed = false;
    ORVA_NET_PROTOCOL::_kest_net_reply record{};
    std::string buffer;
    std::atomic<int> nReferences = 0; // of the queue's holder tag
    std::atomic<int> nOtherTags = 0;  // calls with any other tag

private:
    void Count(int nHolderTag, int n)
    {
        constexpr int QUEUE_HOLDER_TAG = 11;
        nHolderTag == QUEUE_HOLDER_TAG ? nReferences += n : ++nOtherTags;
        onReference(n > 0 ? "take" : "give back");
    }

    unsigned int m_nCmdID;
    bool m_bHasReply;
};

std::string Hex(const std::string& bytes);
