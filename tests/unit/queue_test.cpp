#include <future>

#include <gtest/gtest.h>

#include "FakeCommand.h"
#include "FakeHost.h"
#include "NetProtocolProcDevice.h"
#include "NetProtocolProcTWDECODERDev.h"

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
    queue.AddOneCmd(&c, payload, 0);
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
    unsigned long len = 7; // what it does not replace does nothing
    EXPECT_TRUE(queue.GetBeatData(len) == nullptr && len == 0 && queue.CreateSelf() == nullptr);
    EXPECT_TRUE(queue.Initial(nullptr, 0, 0, 0) == 0 && queue.Start(nullptr, 0) == 0);
    EXPECT_FALSE(queue.IsOnline() || queue.IsWorking());
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
