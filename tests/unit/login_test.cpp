#include <iterator>
#include <sstream>

#include "CommandSamples.h"
#include "Crypto/tdcrypto.h"
#include "SessionFixture.h"

using namespace ORVA_NET_PROTOCOL;
using namespace ORVA2_DECODER_TVW;

namespace {

class LoginTest : public SessionFixture {
protected:
    void ReplyToDooption(const std::string& errorcode = "0")
    {
        ReplyWith(ReplyText("dooption", "%SEQ%", errorcode, "<session>S&lt;1</session>",
                            "<pubkey1>" + DecoderKeys().publicKey + "</pubkey1><pubkey2>KEY2</pubkey2>"));
    }
    void ReplyToDologin(const std::string& errorcode)
    {
        ReplyWith(ReplyText("dologin", "%SEQ%", errorcode, "<token><![CDATA[T</K]]></token>"));
    }
    std::string Login(const std::string& payload = LoginPayload("admin", "secret"))
    {
        return Run(KEST_CMD_REQUEST_LOGIN, payload);
    }
    std::string Deciphered(const std::string& element) const
    {
        return tdcrypto::RsaPriDecrypt(Element(LastRequest(), element), DecoderKeys().privateKey);
    }
    const std::string successAnswer = CommandSampleOf("ProcDoOptionCmd").Answer();
};

TEST_F(LoginTest, TwoExchangesBringKeysSessionAndTokenAndTheAnswerNamesTheNode)
{
    ReplyToDooption();
    ReplyToDologin("0");
    FakeCommand login(KEST_CMD_REQUEST_LOGIN);
    login.onAnswer = [&] {
        ASSERT_EQ(node.frames.size(), 2U);
        EXPECT_EQ(Run(0x50006, ""), "none") << "logged in, but the decoder is silent";
        node.frames.pop_back();
    };
    Process(session, login, LoginPayload("admin", "secret"));
    EXPECT_EQ(login.Answer(), successAnswer);
    const auto header = [](const std::string& url, const std::string& request, const std::string& tail) {
        return Elem("td_header", Elem("version", "2.2") + Elem("type", "request") + Elem("url", url) +
                                     Elem("seq", Element(request, "seq")) + Elem("identity", 3) + tail);
    };
    const std::string first = node.frames[0].substr(8), second = LastRequest();
    EXPECT_EQ(first, Lines("<td_command>" + header("dooption", first, "")) + Body(Elem("encryption", 1)));
    EXPECT_EQ(second,
              Lines("<td_command>" + header("dologin", second,
                                            Elem("session", "S&lt;1") + Elem("token", "") +
                                                Elem("account", Element(second, "account")) +
                                                Elem("authentication", Element(second, "authentication")))) +
                  kNoBody);
    EXPECT_EQ(Deciphered("account"), "admin");
    EXPECT_EQ(Deciphered("authentication"),
              "2BB80D537B1DA3E38BD30361AA855686BDE0EACD7162FEF6A25FE97BF527A25B");
}

TEST_F(LoginTest, RefusalsAreMappedAndLeaveTheSessionClosed)
{
    const std::pair<const char*, const char*> cases[] = {
        {"103", "failure 20000024"},
        {"106", "failure 2000005c"},
        {"51", "failure 20000002"},
        {"105", "failure 2000009e"},
        {"7", "none"},
    };
    for (const auto& [code, answer] : cases) {
        ReplyToDooption();
        ReplyToDologin(code);
        EXPECT_EQ(Login(), answer) << code;
        EXPECT_EQ(Run(0x50006, ""), "failure 20000013") << code;
    }
}

TEST_F(LoginTest, AnUnreadableReplyIsAFailureInTheFirstExchangeAndNoAnswerInTheSecond)
{
    const std::string unreadable = "<td_command><td_header><seq>%SEQ%</seq></td_header>";
    ReplyToDooption();
    ReplyWith(unreadable);
    EXPECT_EQ(Login(), "none");
    ReplyWith(unreadable);
    EXPECT_EQ(Login(), "failure 20000002");
}

TEST_F(LoginTest, AReplyIsNoneUntilAMessageWithAKnownUrlHasCome)
{
    std::vector<std::string> urls = {"unheardof", "", "dostopchlgrouppolling"};
    urls.insert(urls.end(), {"getchannelgroup", "notifychannelchange", "notifychannelstate"});
    for (const CommandSample& sample : CommandSamples()) {
        std::istringstream words(sample.urls);
        urls.insert(urls.end(), std::istream_iterator<std::string>(words), {});
    }
    for (size_t i = 0; i < urls.size(); ++i) {
        CNetProtocolProcTWDECODERDevImp fresh;
        fresh.Start(&node, nullptr, 0);
        Offer(fresh, Frame(ReplyText(urls[i], "1")));
        onPoll = [&] { Offer(fresh, Frame(ReplyText("dooptions", Element(LastRequest(), "seq")))); };
        node.frames.clear();
        FakeCommand command(KEST_CMD_REQUEST_LOGIN);
        fresh.ProcOneCommand(&command, nullptr, 0);
        EXPECT_EQ(node.frames.size(), i < 3 ? 1U : 2U) << urls[i];
        EXPECT_EQ(command.answers, i < 3 ? 0 : 1) << urls[i];
    }
}

TEST_F(LoginTest, WhatAReplyDoesNotNameIsKeptFromBefore)
{
    ReplyToDooption("9"); // what a refused exchange brings counts as well
    Login();
    ReplyWith(ReplyText("dooption", "%SEQ%"));
    ReplyToDologin("103");
    Login();
    ReplyWith(ReplyText("dooption", "%SEQ%"));
    ReplyWith(ReplyText("dologin", "%SEQ%"));
    EXPECT_EQ(Login(), successAnswer);
    EXPECT_EQ(Element(LastRequest(), "session"), "S&lt;1");
    EXPECT_EQ(Element(LastRequest(), "token"), "T&lt;/K"); // even that of a refused login
    EXPECT_EQ(Deciphered("account"), "admin");
    ReplyWith(ReplyText("dooption", "%SEQ%", "0", "<session/><token/>")); // an empty one is named
    ReplyWith(ReplyText("dologin", "%SEQ%", "106", "<token/>"));
    Login();
    EXPECT_EQ(Element(LastRequest(), "session") + Element(LastRequest(), "token"), "T&lt;/K");

    ReplyWith(ReplyText("dooption", "%SEQ%"));
    ReplyToDologin("103");
    EXPECT_EQ(Login(), "failure 20000024");
    EXPECT_EQ(Run(0x50000, Option(0x50002, "")), "failure 2000000f") << "the first login stands";
}

TEST_F(LoginTest, WrongPayloadLengthsAreReportedTwiceAndReadAsFarAsTheyGo)
{
    ReplyToDooption();
    ReplyToDologin("0");
    FakeCommand command(KEST_CMD_REQUEST_LOGIN);
    std::string payload = LoginPayload("admin", "secret"); // its length ends it, not what follows
    session.ProcOneCommand(&command, reinterpret_cast<unsigned char*>(payload.data()), 39);
    EXPECT_EQ(command.Answer(), successAnswer);
    EXPECT_EQ(Deciphered("account"), "adm");
    EXPECT_EQ(Deciphered("authentication").substr(0, 8), "E3B0C442"); // of no password
    ReplyToDooption();
    ReplyToDologin("0");
    EXPECT_EQ(Login(LoginPayload("admin", "secret") + std::string(100000, 'x')), successAnswer);
    EXPECT_EQ(fake_host::CountAsserts(fake_host::kProtocolSource, 549), 2);
    EXPECT_EQ(fake_host::CountAsserts(fake_host::kProtocolSource, 594), 2);
}

TEST_F(LoginTest, FieldsWithoutATerminatorEndWithTheirSize)
{
    ReplyToDooption();
    ReplyToDologin("0");
    std::string payload = LoginPayload(std::string(64, 'u'), std::string(64, 'p'));
    payload[offsetof(_kest_net_login_info, IP)] = '1'; // behind the password
    Login(payload);
    EXPECT_EQ(Deciphered("account"), std::string(64, 'u'));
    char digest[65];
    tdcrypto::Sha265_String(std::string(64, 'p').data(), 64, digest);
    EXPECT_EQ(Deciphered("authentication"), digest);
    EXPECT_EQ(fake_host::CountAsserts(fake_host::kProtocolSource, 549), 0);
}

TEST_F(LoginTest, ALongSessionIdOrTokenIsADeviceErrorAndNothingOfItsReplyIsKept)
{
    const std::string most(65536, 's');
    ReplyWith(
        ReplyText("dooption", "%SEQ%", "0", Elem("session", most), Elem("pubkey1", DecoderKeys().publicKey)));
    ReplyWith(ReplyText("dologin", "%SEQ%", "0", Elem("token", most + "s")));
    EXPECT_EQ(Login(), "failure 20000002");
    EXPECT_EQ(Run(0x50006, ""), "failure 20000013");
    ReplyWith(ReplyText("dooption", "%SEQ%"));
    ReplyWith(ReplyText("dologin", "%SEQ%", "103", Elem("token", most + "s")));
    EXPECT_EQ(Login(), "failure 20000024") << "a refusal has its own code";
    ReplyWith(ReplyText("dooption", "%SEQ%", "0", Elem("session", most + "s"), Elem("pubkey1", "other")));
    EXPECT_EQ(Login(), "failure 20000002");
    ReplyWith(ReplyText("dooption", "%SEQ%"));
    ReplyWith(ReplyText("dologin", "%SEQ%", "0", Elem("token", most)));
    EXPECT_EQ(Login(), successAnswer);
    EXPECT_EQ(Deciphered("account"), "admin");
    EXPECT_EQ(Element(LastRequest(), "session") + Element(LastRequest(), "token"), most);
    Run(0x50000, Option(0x50002, ""));
    EXPECT_EQ(Element(LastRequest(), "token"), most);
}

TEST_F(LoginTest, LogoutLeavesTheLoginAsItIs)
{
    LogIn();
    const std::string logout = Option(TVWALL_DECODE_LOGOUT, "");
    ReplyWith(ReplyText("dologout", "%SEQ%"));
    EXPECT_EQ(Run(KEST_CMD_TVWALL_DECODE_OPTION, logout), "buffer ");
    EXPECT_EQ(Run(KEST_CMD_TVWALL_DECODE_OPTION, logout), "failure 2000000f") << "the decoder is asked again";
    EXPECT_EQ(Element(LastRequest(), "token"), "TOK");
    DevReplyMessage brought{"KEY1", "KEY2", "SID", "TOK"};
    brought.ClearData();
    EXPECT_EQ(brought.s_pubkey1 + brought.s_pubkey2 + brought.s_sessionId + brought.s_token, "");
}

} // namespace
