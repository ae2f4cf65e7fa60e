#include <future>

#include <gtest/gtest.h>

#include "FakeCommand.h"
#include "FakeHost.h"
#include "FakeNode.h"
#include "HostCalls.h"
#include "LinkTexts.h"
#include "NetProtocolProcDevice.h"
#include "NetProtocolProcTWDECODERDev.h"
#include "PluginExports.h"
#include "Session/NetProtocolProcTWDECODERDevImp.h"

namespace {

class RecordingQueue : public CNetProtocolProcDevice {
public:
    void ProcOneCommand(CCmdProcObject* cmd, unsigned char* buf, unsigned int len) override
    {
        Note("run");
        ran.push_back({cmd, buf == nullptr ? "null" : std::string(reinterpret_cast<char*>(buf), len)});
    }
    // Notes what happens, and whether another thread could take the queue's lock meanwhile.
    void Note(const std::string& what)
    {
        const auto isFree = [this] {
            pthread_mutex_t* mutex = m_CmdProcListLock.Handle();
            return pthread_mutex_trylock(mutex) == 0 && pthread_mutex_unlock(mutex) == 0;
        };
        events += what + (std::async(std::launch::async, isFree).get() ? " free, " : " locked, ");
    }

    std::vector<std::pair<CCmdProcObject*, std::string>> ran;
    std::string events;
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
    EXPECT_EQ(a.references, 1);

    EXPECT_TRUE(queue.ProcDevCmd());
    EXPECT_EQ(a.references, 0);
    EXPECT_TRUE(queue.ProcDevCmd());
    EXPECT_TRUE(queue.ProcDevCmd());
    EXPECT_FALSE(queue.ProcDevCmd());
    EXPECT_FALSE(queue.ProcOrvaCmd());
    const decltype(queue.ran) expected = {{&a, "xy"}, {&b, "z"}, {&c, "null"}};
    EXPECT_EQ(queue.ran, expected);
    for (const FakeCommand* command : {&a, &b, &c}) {
        EXPECT_EQ(command->references, 0);
        EXPECT_EQ(command->otherTags, 0);
    }
}

TEST(QueueTest, IsLockedWhileACommandIsQueuedAndFreeWhileItRuns)
{
    RecordingQueue queue;
    FakeCommand command(1);
    command.onReference = [&](const char* what) { queue.Note(what); };
    queue.AddOneCmd(&command, nullptr, 0);
    queue.ProcDevCmd();
    EXPECT_EQ(queue.events, "take locked, run free, give back free, ");
}

TEST(QueueTest, CommandsLeftInTheQueueAreReportedOnce)
{
    fake_host::Reset();
    FakeCommand command(1);
    {
        RecordingQueue queue;
        queue.AddOneCmd(&command, nullptr, 0);
        queue.AddOneCmd(&command, nullptr, 0);
    }
    EXPECT_EQ(fake_host::CountAsserts("NetProtocolProcDevice", 16), 1);
    EXPECT_EQ(command.references, 2); // dropped, not repaired
}

TEST(FacadeTest, IsRegisteredUnderTheDecoderTypeAndLivesThroughTheHostsCalls)
{
    fake_host::Reset();
    fake_host::Get().registDevResult = 42;
    fake_host::Get().registerNodeResult = 5;
    fake_host::Get().startResult = -1; // is not the session's result
    EXPECT_EQ(NET_DEV_DECODERDEVSDK_Initial(), 42);
    EXPECT_EQ(fake_host::Get().registeredType, 513U);

    std::unique_ptr<CNetProtocolProc> processor(fake_host::Get().created);
    FakeNode node;
    EXPECT_EQ(processor->Initial(&node, 7, 8, 9), 5);
    fake_host::Get().onCall = [&](const fake_host::Call& call) {
        if (call.name == "Start") { // bytes may come at once
            Offer(*fake_host::Get().calls[0].observer, Frame(ReplyText("notifychannelstate", "1")), true);
        }
    };
    EXPECT_EQ(processor->Start(nullptr, 0), 0);
    EXPECT_EQ(node.notifications.size(), 1U);
    EXPECT_FALSE(processor->IsWorking());
    EXPECT_TRUE(processor->IsOnline());
    unsigned long len = 0;
    EXPECT_EQ(std::string(processor->GetBeatData(len), 8), std::string("1111\0\0\0\0", 8));
    EXPECT_EQ(len, 8U);

    FakeCommand commands[] = {FakeCommand(0x50006), FakeCommand(0x50006)};
    for (FakeCommand& command : commands) {
        command.onReference = [](const char* what) { fake_host::Get().calls.push_back({what, 7}); };
        command.onAnswer = [] { fake_host::Get().calls.push_back({"answer", 7}); };
        processor->AddOneCmd(&command, nullptr, 0);
    }
    processor->Stop(); // drains the queue
    EXPECT_EQ(commands[0].Answer() + commands[1].Answer(), "failure 20000013failure 20000013");
    processor->Quit();
    NET_DEV_DECODERDEVSDK_Quit();

    const auto& calls = fake_host::Get().calls;
    std::string names;
    for (const auto& call : calls) {
        EXPECT_EQ(call.netCommunication, 7);
        names += call.name + " ";
    }
    EXPECT_EQ(names, "RegisterNode Start take take answer give back answer give back Stop UnRegisterNode "
                     "DestroyHNetCommunication ");
    EXPECT_EQ(calls[0].observer, calls[0].context);
    EXPECT_EQ(calls[0].a, 8);
    EXPECT_EQ(calls[0].b, 9);
}

TEST(FacadeTest, StopAsksItsOwnProcDevCmdUntilTheQueueIsEmpty)
{
    struct Processor : CNetProtocolProcTWDECODERDev {
        bool ProcDevCmd() override
        {
            ++asked;
            return CNetProtocolProcTWDECODERDev::ProcDevCmd();
        }
        int asked = 0;
    };
    Processor processor;
    FakeCommand command(0x50006);
    processor.AddOneCmd(&command, nullptr, 0);
    processor.Stop();
    EXPECT_EQ(processor.asked, 2);
}

} // namespace
