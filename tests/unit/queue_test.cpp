#include <gtest/gtest.h>

#include "FakeCommand.h"
#include "FakeHost.h"
#include "FakeNode.h"
#include "NetProtocolProcDevice.h"
#include "NetProtocolProcTWDECODERDev.h"
#include "NetProtocolProcTWDECODERDevImp.h"
#include "PluginExports.h"

namespace {

class RecordingQueue : public CNetProtocolProcDevice {
public:
    void ProcOneCommand(CCmdProcObject* cmd, unsigned char* buf, unsigned int len) override
    {
        ran.push_back({cmd, buf == nullptr ? "null" : std::string(reinterpret_cast<char*>(buf), len)});
    }
    std::vector<std::pair<CCmdProcObject*, std::string>> ran;
};

TEST(QueueTest, RunsCommandsInOrderOnPrivateCopiesAndGivesTheirReferencesBack)
{
    RecordingQueue queue;
    FakeCommand a(1), b(2), c(3);
    unsigned char payload[] = {'x', 'y'};
    queue.AddOneCmd(&a, payload, 2);
    payload[0] = 'z';
    queue.AddOneCmd(&b, payload, 1);
    queue.AddOneCmd(&c, nullptr, 0);
    EXPECT_EQ(a.nReferences, 1);

    EXPECT_TRUE(queue.ProcDevCmd());
    EXPECT_EQ(a.nReferences, 0);
    EXPECT_TRUE(queue.ProcDevCmd());
    EXPECT_TRUE(queue.ProcDevCmd());
    EXPECT_FALSE(queue.ProcDevCmd());
    EXPECT_FALSE(queue.ProcOrvaCmd());
    const decltype(queue.ran) expected = {{&a, "xy"}, {&b, "z"}, {&c, "null"}};
    EXPECT_EQ(queue.ran, expected);
    for (const FakeCommand* command : {&a, &b, &c}) {
        EXPECT_EQ(command->nReferences, 0);
        EXPECT_EQ(command->nOtherTags, 0);
    }
}

TEST(QueueTest, ACommandLeftInTheQueueIsReportedOnce)
{
    fake_host::Reset();
    FakeCommand command(1);
    {
        RecordingQueue queue;
        queue.AddOneCmd(&command, nullptr, 0);
    }
    EXPECT_EQ(fake_host::CountAsserts("NetProtocolProcDevice", 16), 1);
    EXPECT_EQ(command.nReferences, 1); // dropped, not repaired
}

TEST(FacadeTest, IsRegisteredUnderTheDecoderTypeAndLivesThroughTheHostsCalls)
{
    fake_host::Reset();
    fake_host::Get().registDevResult = 42;
    fake_host::Get().registerNodeResult = 5;
    fake_host::Get().startResult = -1; // is not the session's result
    EXPECT_EQ(NET_DEV_DECODERDEVSDK_Initial(), 42);
    EXPECT_EQ(fake_host::Get().registeredType, 513U);

    std::unique_ptr<CNetProtocolProc> processor(fake_host::Get().pCreated);
    FakeNode node;
    EXPECT_EQ(processor->Initial(&node, 7, 8, 9), 5);
    EXPECT_EQ(processor->Start(nullptr, 0), 0);
    EXPECT_FALSE(processor->IsWorking());
    EXPECT_TRUE(processor->IsOnline());
    unsigned long nLen = 0;
    EXPECT_EQ(std::string(processor->GetBeatData(nLen), 8), std::string("1111\0\0\0\0", 8));
    EXPECT_EQ(nLen, 8U);

    FakeCommand command(0x50006);
    processor->AddOneCmd(&command, nullptr, 0);
    processor->Stop(); // drains the queue
    EXPECT_EQ(command.Answer(), "failure 20000013");
    EXPECT_EQ(command.nReferences, 0);
    processor->Quit();
    NET_DEV_DECODERDEVSDK_Quit();

    const auto& calls = fake_host::Get().calls;
    std::string names;
    for (const auto& call : calls) {
        EXPECT_EQ(call.hNetCommunication, 7);
        names += call.name + " ";
    }
    EXPECT_EQ(names, "RegisterNode Start Stop UnRegisterNode DestroyHNetCommunication ");
    EXPECT_EQ(calls[0].pObserver, calls[0].pContext);
    EXPECT_EQ(calls[0].a, 8);
    EXPECT_EQ(calls[0].b, 9);
}

} // namespace
