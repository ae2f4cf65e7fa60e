#include <dlfcn.h>
#include <memory>

#include <gtest/gtest.h>

#include "FakeCommand.h"
#include "FakeHost.h"
#include "FakeNode.h"
#include "HostCalls.h"
#include "LinkTexts.h"
#include "NetProtocolProc.h"

namespace {

// One life of the library in the host: loaded, a processor made, started, used, stopped, destroyed, unloaded.
void OneRound()
{
    void* library = dlopen(TVWALL_PLUGIN_PATH, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    const auto Initial = reinterpret_cast<int (*)()>(dlsym(library, "NET_DEV_DECODERDEVSDK_Initial"));
    const auto Quit = reinterpret_cast<void (*)()>(dlsym(library, "NET_DEV_DECODERDEVSDK_Quit"));
    ASSERT_TRUE(Initial != nullptr && Quit != nullptr);

    fake_host::Get().calls.clear();
    EXPECT_EQ(Initial(), 0);
    std::unique_ptr<CNetProtocolProc> processor(fake_host::Get().created);
    FakeNode node;
    FakeCommand command(0x50006);
    processor->Initial(&node, 3, 0, 0);
    CSocketDataObserver* observer = fake_host::Get().calls.back().observer;
    processor->Start(nullptr, 0);
    Offer(*observer, Frame(ReplyText("notifychannelstate", "1")) + "1111", true); // and half a head is left
    EXPECT_EQ(node.notifications.size(), 1U);
    processor->AddOneCmd(&command, nullptr, 0);
    processor->Stop();
    processor->Quit();
    processor.reset();
    Quit();
    EXPECT_EQ(dlclose(library), 0);
    EXPECT_EQ(command.Answer(), "failure 20000013");
    EXPECT_EQ(command.references, 0);
}

TEST(LoadTest, AThousandRoundsFromLoadingToUnloadingLeaveNothingBehind)
{
    fake_host::Reset();
    fake_host::SetLogRecording(false);
    for (int round = 0; round < 1000; ++round) {
        OneRound();
        ASSERT_FALSE(HasFailure()) << round;
    }
    EXPECT_EQ(fake_host::LiveBuffers(), 0);
    fake_host::Reset();
}

} // namespace
