#include <dlfcn.h>
#include <fstream>
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
    const auto initial = reinterpret_cast<int (*)()>(dlsym(library, "NET_DEV_DECODERDEVSDK_Initial"));
    const auto quit = reinterpret_cast<void (*)()>(dlsym(library, "NET_DEV_DECODERDEVSDK_Quit"));
    ASSERT_TRUE(initial != nullptr && quit != nullptr);

    auto& host = fake_host::Get();
    host.calls.clear();
    EXPECT_TRUE(initial() == 42 && host.registeredType == 513);

    std::unique_ptr<CNetProtocolProc> processor(host.created);
    FakeNode node;
    EXPECT_TRUE(processor->IsOnline() && processor->Initial(&node, 7, 8, 9) == 5);
    host.onCall = [&](const fake_host::Call& call) {
        if (call.name == "Start") { // bytes may come at once; half a head is left
            Offer(*host.calls[0].observer, Frame(ReplyText("notifychannelstate", "1")) + "1111", true);
        }
    };
    EXPECT_EQ(processor->Start(nullptr, 0), 0);
    EXPECT_EQ(node.notifications.size(), 1U);
    EXPECT_FALSE(processor->IsWorking());
    for (int check = 1; check <= 17; ++check) {
        EXPECT_EQ(processor->IsOnline(), check < 17);
    }
    unsigned long len = 0;
    EXPECT_EQ(std::string(processor->GetBeatData(len), 8), std::string("1111\0\0\0\0", 8));
    EXPECT_EQ(len, 8U);

    FakeCommand commands[] = {FakeCommand(0x50006), FakeCommand(0x50006)};
    for (FakeCommand& command : commands) {
        command.onReference = [&](const char* what) { host.calls.push_back({what, 7}); };
        command.onAnswer = [&] { host.calls.push_back({"answer", 7}); };
        processor->AddOneCmd(&command, nullptr, 0);
    }
    processor->Stop(); // drains the queue
    EXPECT_EQ(commands[0].Answer() + commands[1].Answer(), "failure 20000013failure 20000013");
    EXPECT_EQ(Offer(*host.calls[0].observer, "1", true), 0U) << "a stopped session is deaf";
    processor->Quit();
    processor.reset();
    quit();
    EXPECT_EQ(dlclose(library), 0);

    std::string names;
    for (const auto& call : host.calls) {
        EXPECT_EQ(call.netCommunication, 7);
        names += call.name + " ";
    }
    EXPECT_EQ(names, "RegisterNode Start take take answer give back answer give back Stop UnRegisterNode "
                     "DestroyHNetCommunication ");
    EXPECT_EQ(host.calls[0].observer, host.calls[0].context);
    EXPECT_EQ(std::pair(host.calls[0].a, host.calls[0].b), std::pair(8, 9));
}

TEST(LoadTest, HostAndPluginCallEachOtherByTheirPlacesInTheTables)
{
    using P = CNetProtocolProc; // its destructor takes two
    using N = CNetNode;
    using C = CCmdProcObject;
    EXPECT_EQ(Entries(&P::Initial, &P::Quit, &P::Start, &P::Stop, &P::ProcDevCmd, &P::ProcOrvaCmd,
                      &P::CreateSelf, &P::GetBeatData, &P::IsOnline, &P::IsWorking, &P::ProcOneCommand,
                      &P::AddOneCmd, &N::DeliverCommand, &N::SendData, &N::IsDropRecvData, &N::Disconnect,
                      &N::GetNodeID, &C::GetRequestCommand, &C::HasReply, &C::AddReference, &C::DecReference,
                      &C::ReplyRecord, &C::ReplyBuffer, &CSocketDataObserver::OnSocketRecvData),
              (std::vector<long>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 12, 13, 0, 1, 2, 3, 4, 0, 1, 2, 3, 4, 5, 2}));
}

TEST(LoadTest, AThousandRoundsFromLoadingToUnloadingLeaveNothingBehind)
{
    fake_host::Reset();
    fake_host::SetLogRecording(false);
    fake_host::Get().registDevResult = 42;
    fake_host::Get().registerNodeResult = 5;
    fake_host::Get().startResult = -1; // is not the session's result
    for (int round = 0; round < 1000; ++round) {
        OneRound();
        ASSERT_FALSE(HasFailure()) << round;
    }
    EXPECT_EQ(fake_host::LiveBuffers(), 0);
    fake_host::Reset();
}

TEST(LoadTest, TheLibraryHoldsTheTextOfItsVersion)
{
    std::ifstream file(TVWALL_PLUGIN_PATH);
    EXPECT_NE(std::string(std::istreambuf_iterator(file), {}).find("DECODERDev " TVWALL_VERSION),
              std::string::npos);
}

} // namespace
