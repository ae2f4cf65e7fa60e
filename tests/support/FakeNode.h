#pragma once

#include <functional>
#include <string>
#include <vector>

#include "AllocationFault.h"
#include "FakeHost.h"
#include "NetNode.h"

// A host node that records what is sent and delivered, and fails on order. Not locked.
class FakeNode : public CNetNode {
public:
    virtual ~FakeNode() = default;

    struct Notification {
        unsigned int cmdID;
        unsigned int optType;
        unsigned int len;
        GUID destination;
        std::string data;
    };

    void DeliverCommand(unsigned int cmdID, CCmdProcParam* delivered) override
    {
        const allocation_fault::Pause pause;
        onDeliver();
        const auto& param = dynamic_cast<CCmdProcParamMTvwall&>(*delivered);
        notifications.push_back({cmdID, param.m_DataTvwallInfo.nOptType, param.m_DataTvwallInfo.nLen,
                                 param.m_destNodeID, std::string(param.GetData(), param.GetDataLen())});
    }
    bool SendData(const void* data, unsigned long len) override
    {
        const allocation_fault::Pause pause;
        onSend();
        if (!sendErrors.empty()) {
            fake_host::SetLastError(sendErrors.front());
            sendErrors.erase(sendErrors.begin());
            return false;
        }
        frames.emplace_back(static_cast<const char*>(data), len);
        return true;
    }
    bool IsDropRecvData() override
    {
        onDropAsked();
        return drop;
    }
    void Disconnect() override { ++disconnects; }
    GUID GetNodeID() const override { return id; }

    std::vector<std::string> frames; // sent
    std::vector<Notification> notifications;
    // Run inside the functions of the node, before they do anything.
    std::function<void()> onSend = [] {};
    std::function<void()> onDeliver = [] {};
    std::function<void()> onDropAsked = [] {};
    std::vector<unsigned int> sendErrors; // the next sends fail with these
    bool drop = false;
    int disconnects = 0;
    GUID id{0x01234567, 0x89AB, 0xCDEF, {0x10, 0x20, 0x30, 0x40, 0x50, 0x60, 0x70, 0x80}};
};
