#include "SessionFixture.h"

using namespace ORVA_NET_PROTOCOL;
using namespace ORVA2_DECODER_TVW;

namespace {

const char SOURCE[] = "NetProtocolProcTWDECODERDevImp";

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
    struct {
        unsigned int id;
        std::string payload;
    } const cases[] = {
        {0x50003, ""},
        {0x50000, Option(0x60004, "x")}, // an option type of another command
        {0x50001, Option(0x60006, "x")},
        {0x50002, Option(0x99999, "x")},
        {0x50002, "1234567"}, // no whole option head
        {0x50002, ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Run(c.id, c.payload), "none") << c.id;
    }
    EXPECT_TRUE(node.frames.empty());
}

TEST_F(DispatchTest, CommandsAndLoggedOptionTypesAppearInTheLog)
{
    LogIn();
    Run(0x50000, Option(5, ""));
    Run(0x50001, Option(6, ""));
    Run(0x50002, Option(7, ""));
    std::vector<std::string> texts;
    for (const auto& log : fake_host::Logs()) {
        texts.push_back(log.text);
    }
    EXPECT_EQ(texts, (std::vector<std::string>{
                         "**************a=327680\n", "**************pOptType.opt:5******************",
                         "**************a=327681\n", "**************pOptType.opt:6******************",
                         "**************a=327682\n"}));
    EXPECT_EQ(fake_host::CountLogs(fake_host::LogLevel::Normal, SOURCE, 166), 3);
}

TEST_F(DispatchTest, TheOptionRecordEndsWithThePayloadWhateverItsHeadSays)
{
    LogIn();
    struct {
        const char* what;
        unsigned long nLen;
        std::string extra; // of the answer
    } const cases[] = {
        {"announced huge", 0xFFFFFFFF, "abc"},
        {"announced exactly", 3, "abc"},
        {"announced short", 2, "ab"},
        {"announced empty", 0, ""},
    };
    for (const auto& c : cases) {
        ReplyWith(ReplyText("dowallclear", "%SEQ%"));
        EXPECT_EQ(Run(0x50001, Bytes().U32(0x60011).U32(c.nLen).Text("abc")),
                  "buffer " + Hex(Bytes()
                                      .U32(0x60011)
                                      .U16(8)
                                      .U16(static_cast<unsigned int>(c.extra.size()))
                                      .U32(0)
                                      .U32(0)
                                      .Text(c.extra)))
            << c.what;
    }
}

TEST_F(DispatchTest, ExtraDataBeyondTheLengthFieldFollowsWhole)
{
    LogIn();
    const std::string extra(0x10005, 'e');
    ReplyWith(ReplyText("dowallclear", "%SEQ%"));
    EXPECT_EQ(Run(0x50001, Option(0x60011, extra)),
              "buffer " + Hex(Bytes().U32(0x60011).U16(8).U16(5).U32(0).U32(0).Text(extra)));
}

TEST_F(DispatchTest, NoAnswerLeavesWhenNoneIsWanted)
{
    LogIn();
    ReplyWith(ReplyText("dowallclear", "%SEQ%"));
    EXPECT_EQ(Run(0x50001, Option(0x60011, ""), false), "none");
    ReplyWith(ReplyText("dowallclear", "%SEQ%", "5"));
    EXPECT_EQ(Run(0x50001, Option(0x60011, ""), false), "none");
    EXPECT_EQ(node.frames.size(), 2U);
}

} // namespace
