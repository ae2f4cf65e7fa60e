// What can be said of every command, by its sample: the request, the answer, and what follows when the
// decoder does not play along. A family's own test adds what is special to it.

#include "WallCommandFixture.h"

namespace {

class CommandTest : public WallCommandFixture, public testing::WithParamInterface<CommandSample> {
protected:
    std::string Run() { return SessionFixture::Run(GetParam().cmdID, GetParam().Payload()); }
};

TEST_P(CommandTest, SendsItsRequestAndAnswersTheHost)
{
    Check(GetParam());
    const size_t notifications = node.notifications.size();
    Check(GetParam(), false);
    EXPECT_EQ(node.notifications.size(), 2 * notifications);
}

TEST_P(CommandTest, TellsTheHostWhenTheDecoderRefusesOrIsSilent)
{
    const bool isLogin = GetParam().cmdID == 0x101;
    const std::string noReply = GetParam().AnswerWithoutReply();

    ReplyWith(ReplyText("dowallclear", "%SEQ%", "5"));
    EXPECT_EQ(Run(), "failure 20000002");
    EXPECT_EQ(node.frames.size(), 1U) << "no second request after a failure";
    ReplyWith(ReplyText("dowallclear", "%SEQ%", "5"));
    EXPECT_EQ(SessionFixture::Run(GetParam().cmdID, GetParam().Payload(), false), "none");

    node.sendErrors = {1};
    EXPECT_EQ(Run(), noReply);
    const auto logs = fake_host::Logs();
    EXPECT_EQ(logs[logs.size() - (isLogin ? 2 : 1)].text,
              "CNetProtocolProcTWDECODERImp：：SendDataToDev 发送失败 ");
    EXPECT_EQ(fake_host::CountLogs(fake_host::LogLevel::Abnormal, "NetProtocolProcTWDECODERDevImp", 2025), 1);
}

INSTANTIATE_TEST_SUITE_P(Every, CommandTest, testing::ValuesIn(CommandSamples()));

} // namespace
