#include <set>
#include <tuple>

#include "CommandSamples.h"
#include "SessionFixture.h"

using namespace ORVA_NET_PROTOCOL;
using namespace ORVA2_DECODER_TVW;

namespace {

using DispatchTest = SessionFixture;

TEST_F(DispatchTest, BeforeTheLoginEveryOtherCommandIsRefusedWithoutAskingTheDecoder)
{
    for (const unsigned int id : {0x50000U, 0x50002U, 0x50006U, 0x50003U, 0U}) {
        EXPECT_EQ(Run(id, ""), "failure 20000013") << id;
        EXPECT_EQ(Run(id, "", false), "none") << id;
    }
    EXPECT_TRUE(node.frames.empty());
}

TEST_F(DispatchTest, WhatIsNotListedIsIgnored)
{
    LogIn();
    std::set<std::pair<unsigned int, unsigned int>> listed;
    for (const CommandSample& sample : CommandSamples()) {
        listed.emplace(sample.cmdID, sample.optType);
    }
    for (unsigned int cmdID = 0x50000; cmdID < 0x50010; ++cmdID) {
        for (unsigned int type = 0; type < 0x40; ++type) { // 0x50000 to 0x5001F and 0x60000 to 0x6001F
            const unsigned int optType = type < 0x20 ? 0x50000 + type : 0x60000 + type - 0x20;
            if (!listed.contains({cmdID, optType}) && !listed.contains({cmdID, CommandSample::kNoOption})) {
                EXPECT_EQ(Run(cmdID, Option(optType, "x")), "none") << cmdID << " " << optType;
            }
        }
    }
    for (const std::string& payload :
         {std::string(), Option(0x60009, "").substr(0, 7)}) { // no whole option head
        EXPECT_EQ(Run(0x50002, payload), "none");
    }
    EXPECT_TRUE(node.frames.empty());
}

TEST_F(DispatchTest, CommandsAndLoggedOptionTypesAppearInTheLog)
{
    LogIn();
    Run(0x50000, Option(-5U, ""));
    Run(0x50001, Option(6, ""));
    Run(0x50002, Option(7, ""));
    Run(0x80000000, "");
    std::vector<std::string> texts;
    for (const auto& log : fake_host::Logs()) {
        texts.push_back(log.text + std::to_string(log.line));
        EXPECT_TRUE(log.level == fake_host::LogLevel::Normal && log.source == fake_host::kProtocolSource);
    }
    EXPECT_EQ(texts, (std::vector<std::string>{
                         "**************a=327680\n166", "**************pOptType.opt:-5******************0",
                         "**************a=327681\n166", "**************pOptType.opt:6******************0",
                         "**************a=327682\n166", "**************a=-2147483648\n166"}));
}

TEST_F(DispatchTest, TheOptionRecordEndsWithThePayloadWhateverItsHeadSays)
{
    LogIn();
    const std::string large(0x10005, 'e'); // longer than the answer's length field can say
    const std::tuple<unsigned long, std::string, std::string> cases[] = {
        {0xFFFFFFFF, "abc", "abc"}, {3, "abc", "abc"}, {2, "abc", "ab"}, {0, "abc", ""},
        {0x10005, large, large},
    };
    for (const auto& [len, record, extra] : cases) {
        ReplyWith(ReplyText("dowallclear", "%SEQ%"));
        EXPECT_EQ(Run(0x50001, Bytes().U32(0x60011).U32(len).Text(record)), ResultOf(0x60011, extra)) << len;
    }
}

} // namespace
