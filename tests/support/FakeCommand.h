#pragma once

#include <atomic>
#include <functional>
#include <string>

#include "AllocationFault.h"
#include "CmdProcObject.h"

// A host command that records its references and every answer it gets.
class FakeCommand : public CCmdProcObject {
public:
    explicit FakeCommand(unsigned int cmdID, bool hasReply = true) : m_cmdID(cmdID), m_hasReply(hasReply) {}
    virtual ~FakeCommand() = default;

    unsigned int GetRequestCommand() const override { return m_cmdID; }
    bool HasReply() const override { return m_hasReply; }
    void AddReference(int holderTag) override { Count(holderTag, 1); }
    void DecReference(int holderTag) override { Count(holderTag, -1); }
    void ReplyRecord(const ORVA_NET_PROTOCOL::_kest_net_reply& reply) override
    {
        ++answers;
        failed = true;
        record = reply;
        onAnswer();
    }
    void ReplyBuffer(const char* data, unsigned long len) override
    {
        const allocation_fault::Pause pause;
        buffer.assign(data == nullptr ? "" : data, len);
        ++answers;
        onAnswer();
    }

    // What was answered, in one text: "none", "failure 20000013", "buffer <hex>", or "twice".
    std::string Answer() const;

    std::function<void()> onAnswer = [] {};                                 // runs inside the answer
    std::function<void(const char* what)> onReference = [](const char*) {}; // "take", "give back"
    std::atomic<int> answers = 0;
    bool failed = false;
    ORVA_NET_PROTOCOL::_kest_net_reply record{};
    std::string buffer;
    std::atomic<int> references = 0; // of the queue's holder tag
    std::atomic<int> otherTags = 0;  // calls with any other tag

private:
    void Count(int holderTag, int n)
    {
        constexpr int kQueueHolderTag = 11;
        holderTag == kQueueHolderTag ? references += n : ++otherTags;
        onReference(n > 0 ? "take" : "give back");
    }

    unsigned int m_cmdID;
    bool m_hasReply;
};

std::string Hex(const std::string& bytes);
