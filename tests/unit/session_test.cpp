#include "SessionFixture.h"
#include <tuple>

#include "CommandSamples.h"
#include "MonitorTvwComm.h"
#include "Session/Envelope.h"

using namespace ORVA_NET_PROTOCOL;
using namespace ORVA2_CLIENT_TVW;
using namespace ORVA2_DECODER_TVW;

// What the session keeps and none of its seams shows.
class SessionAccess {
public:
    using Session = CNetProtocolProcTWDECODERDevImp;

    static bool WaitProc(Session& session, unsigned int seq, unsigned int ms)
    {
        return session.WaitProc(seq, ms);
    }
    // The text of the last message, and the number of the last one that had any.
    static std::string Stored(const Session& session)
    {
        EXPECT_EQ(session.m_BufReplayValidLen, session.m_BufValidLenReply);
        return {session.m_pBufferReply, session.m_BufReplayValidLen};
    }
    static int LastNumber(const Session& session) { return session.m_recvCmdID; }
    static std::string Result(int type, int code, const std::string& extra, unsigned long len)
    {
        char* buf = new char[len];
        EXPECT_EQ(Session::DevToKESTDefaultResultBuf(type, code, buf, len, extra.data(), extra.size()), len);
        const std::unique_ptr<char[]> owned(buf);
        return {buf, len};
    }
    // What others that call these by name read from a reply.
    static void Read(S_MTvw_Wall_Layout& layout, const std::string& text)
    {
        Session::GetWallLayoutMessage(layout, text.data(), static_cast<unsigned int>(text.size()));
    }
    static void Read(S_MTvw_Wall_Get_ChGroup_info& groups, const std::string& text)
    {
        Session::GetChGroupInfoXml(groups, text.data(), static_cast<unsigned int>(text.size()));
    }
};

namespace {

const unsigned int kFirstNumber = CNetProtocolProcTWDECODERDevImp::GetCmdID(); // of the process
const std::string kClearWall = Option(TVWALL_DECODE_CLEAR_WALL, "");

class SessionTest : public SessionFixture {
protected:
    std::string ClearWall() { return Run(KEST_CMD_TVWALL_DECODE_SAVE_CONFIG, kClearWall); }
    const std::string done = "buffer " + Hex(Bytes().U32(0x60011).U16(8).U16(0).U32(0).U32(0));
};

TEST_F(SessionTest, SequenceNumbersGoUpByOneAcrossSessions)
{
    unsigned int first = 0;
    for (; first <= 0xFFFF; first = CNetProtocolProcTWDECODERDevImp::GetCmdID()) {
    }
    EXPECT_EQ(kFirstNumber, 257U);
    EXPECT_EQ(CDeviceRequest("dooption").Seq(), first + 1);
    EXPECT_EQ(CDeviceRequest(session, "dologin").Seq(), first + 2);
    using Session = CNetProtocolProcTWDECODERDevImp;
    EXPECT_EQ(Session::CmdIDAfter(0xFFFFFFFC), 0xFFFFFFFD);
    EXPECT_EQ(Session::CmdIDAfter(0xFFFFFFFD), 256U);
    EXPECT_EQ(Session::CmdIDAfter(256), 257U);
    CMarkupSTL doc;
    Session::AddRequestXmfHeader(doc);
    session.AddCommomXmlStr(doc, "dologin", 0xFFFFFFFD);
    EXPECT_EQ(Element(doc.GetDoc(), "seq"), "4294967293");
}

// A host may run a second command from inside the answer to the first one; system information goes on after
// its answer.
TEST_F(SessionTest, CommandsThatRunOneInsideTheOtherHaveAnAnswerEach)
{
    LogIn();
    const CommandSample& info = CommandSampleOf("GetDecSystemInfo");
    FakeCommand outer(info.cmdID);
    outer.onAnswer = [&] {
        ReplyWith(ReplyText("dowallclear", "%SEQ%", "9"));
        EXPECT_EQ(ClearWall(), "failure 20000002");
        ReplyWith(ReplyText("getchannelinfo", "%SEQ%", "0", "", "<outer/>"));
    };
    ReplyWith(ReplyText("getsysteminfo", "%SEQ%", "0", "", info.replyBody));
    Process(session, outer, info.Payload());
    EXPECT_EQ(outer.Answer(), info.Answer());
    ASSERT_EQ(node.frames.size(), 3U);
    EXPECT_EQ(Element(node.frames[1], "url"), "dowallclear");
    ASSERT_EQ(node.notifications.size(), 1U);
    EXPECT_NE(node.notifications[0].data.find("<outer/>"), std::string::npos);
}

TEST_F(SessionTest, NoReplyForThreeHundredPollsIsATimeout)
{
    LogIn();
    EXPECT_EQ(ClearWall(), "failure 2000000f");
    EXPECT_EQ(polls, 300);
    EXPECT_EQ(fake_host::CountLogs(fake_host::LogLevel::Normal, fake_host::kProtocolSource, 1940), 1);
    EXPECT_FALSE(SessionAccess::WaitProc(session, 0xFFFFFFFD, 199));
    EXPECT_EQ(fake_host::Logs().back().text, "CNetProtocolProcTWDECODERDevImp::WaitProc time out "
                                             "等待设备回复命令超时 nCmdID=-3 , m_recvCmdID=-1");
    EXPECT_FALSE(SessionAccess::WaitProc(session, 1, 99));
    EXPECT_EQ(polls, 301) << "a part of a poll is none";
}

// What comes around the reply has its own number more often than not: decoders number their notifications.
TEST_F(SessionTest, NoOtherMessageHidesTheReply)
{
    LogIn();
    for (const char* url : {"notifychannelstate", "notifychannelchange", "dowallclear", "stranger"}) {
        onPoll = [&] {
            if (polls == 2) {
                const std::string seq = Element(LastRequest(), "seq");
                Receive(Frame(ReplyText(url, "1", "9")) + Frame(ReplyText("dowallclear", seq)) + Frame("") +
                        Frame(ReplyText(url, "1000000", "9")) + Frame(ReplyText("dowallclear", seq, "9")));
                Receive(Frame(ReplyText(url, "1000001", "9")));
            }
        };
        EXPECT_EQ(ClearWall(), done) << url;
        EXPECT_EQ(polls, 2) << url;
    }
}

TEST_F(SessionTest, ANotificationWithTheAwaitedNumberIsTakenForTheReply)
{
    LogIn();
    const auto awaited = [this](const char* url, const char* code) {
        return Frame(ReplyText(url, Element(LastRequest(), "seq"), code));
    };
    onPoll = [&] { Receive(awaited("notifychannelstate", "0")); };
    EXPECT_EQ(ClearWall(), done);
    onPoll = [&] { Receive(awaited("notifychannelchange", "9")); };
    EXPECT_EQ(ClearWall(), "failure 20000002");
    // Not where the reply itself has come, and not where another number was the last one.
    onPoll = [&] {
        const std::string notification = awaited("notifychannelchange", "9");
        Receive(notification + awaited("dowallclear", "0") + notification);
    };
    EXPECT_EQ(ClearWall(), done);
    onPoll = [&] {
        Receive(awaited("notifychannelchange", "0") + Frame(ReplyText("notifychannelchange", "1")));
    };
    EXPECT_EQ(ClearWall(), "failure 2000000f");
    EXPECT_EQ(polls, 300);
}

// The channels are asked for after the answer, so what comes inside it comes before that question.
TEST_F(SessionTest, AMessageFromBeforeTheQuestionCountsOnlyAsTheLastNumber)
{
    LogIn();
    for (const bool followed : {false, true}) {
        FakeCommand command(KEST_CMD_TVWALL_DECODE_GET_CONFIG);
        command.onAnswer = [&] {
            const std::string next = std::to_string(CNetProtocolProcTWDECODERDevImp::GetCmdID() + 1);
            Receive(Frame(ReplyText("getchannelinfo", next)) +
                    (followed ? Frame(ReplyText("stranger", "1")) : ""));
        };
        ReplyWith(ReplyText("getsysteminfo", "%SEQ%"));
        polls = 0;
        Process(session, command, CommandSampleOf("GetDecSystemInfo").Payload());
        EXPECT_EQ(polls, followed ? 301 : 2);
        EXPECT_EQ(node.notifications.size(), 1U);
    }
}

TEST_F(SessionTest, EveryMessageIsStoredAndTheNumberBehindItsUrlIsReadAsDecimal)
{
    const std::tuple<std::string, int> cases[] = {
        {"<url>dowallclear</url><seq>4294967298abc</seq>", 2}, // 32 bits
        {"<url>dowallclear</url><seq>4294967295</seq>", -1},
        {"<url>unheardof</url><x/><seq> -010</seq>", -10},
        {"<url/><seq>0x10</seq>", 0},
        {"<seq>7</seq>", 7},
        {"<seq>8</seq><url>dowallclear</url>", 7},
        {"<seq>8</seq><url>dowallclear</url><seq>9</seq>", 9},
        {"<x><url/><seq>8</seq></x>", 9},
        {"", 9}};
    for (const auto& [header, seq] : cases) {
        const std::string text = Elem("td_command", Elem("td_header", header));
        Receive(Frame(text));
        EXPECT_EQ(SessionAccess::LastNumber(session), seq) << text;
        EXPECT_EQ(SessionAccess::Stored(session), text);
    }
}

TEST_F(SessionTest, RepliesAreReadByNameAsByTheirCommandsWithTheCountAsItWas)
{
    const auto check = [](auto record, const char* handler) {
        const CommandSample& sample = CommandSampleOf(handler);
        SessionAccess::Read(record, ReplyText("", "1", "0", "", sample.replyBody));
        EXPECT_EQ(record.Encode(), sample.answerData);
    };
    S_MTvw_Wall_Layout layout;
    S_MTvw_Wall_Get_ChGroup_info groups;
    layout._numchannel = groups._numchgroup = 1;
    check(layout, "GetWallLayout");
    check(groups, "GetChannelGroup");
}

TEST_F(SessionTest, AResultHoldsItsTypeAndCodeWhole)
{
    for (const unsigned long room : {1UL, 17UL, 18UL, 99UL}) {
        EXPECT_EQ(SessionAccess::Result(-6, -5, "ab", room),
                  std::string(Bytes().U32(-6UL).U16(8).U16(2).U32(1).U32(-5UL).Text("ab")));
    }
}

TEST_F(SessionTest, AReplyWithoutAnErrorCodeIsASuccess)
{
    LogIn();
    ReplyWith("<td_command><td_header><url>dowallclear</url><seq>%SEQ%</seq></td_header></td_command>");
    EXPECT_EQ(ClearWall(), done);
}

TEST_F(SessionTest, LivenessLastsSixteenChecksWithoutAFrame)
{
    for (int round = 0; round < 3; ++round) {
        for (int i = 1; i <= 16; ++i) {
            EXPECT_TRUE(session.IsOnline()) << i;
        }
        unsigned long len = 0;
        EXPECT_EQ(std::string(session.GetBeatData(len), 8), Frame("")); // nor does what the host sends
        EXPECT_EQ(len, 8U);
        Receive(std::string(64, '2')); // a device head says nothing
        EXPECT_FALSE(session.IsOnline());
        Receive(round == 0 ? Frame("") : Frame("x")); // a heartbeat or any message
    }
    EXPECT_TRUE(fake_host::Logs().empty());
}

TEST_F(SessionTest, NotificationsReachTheHostWithTheLengthOfTheLastRequest)
{
    CCmdProcParam parent(nullptr, "", 0);
    const CCmdProcParamMTvwall child(&parent, "none", 0);
    EXPECT_TRUE(child.GetParent() == &parent && parent.GetParent() == nullptr);
    EXPECT_STREQ(child.GetData(), "none");
    Receive(Frame(ReplyText("notifychannelstate", "76")));
    ASSERT_EQ(node.notifications.size(), 1U);
    EXPECT_EQ(node.notifications[0].len, 1024U) << "the buffer's before the first request";
    LogIn();
    for (const auto& [url, type, count] : // one request of more than 64 KiB, then a shorter one
         {std::tuple("notifychannelchange", 0x60000U, 4000UL), {"notifychannelstate", 0x60001U, 1UL}}) {
        ReplyWith(ReplyText("dodestroywindow", "%SEQ%"));
        Run(0x50002, Option(0x60007, Guids().U32(count).Zeros(4 * count)));
        EXPECT_EQ(node.frames.back(), Frame(LastRequest()));
        const std::string text = ReplyText(url, "77", "0", "", Repeat("x", 70000)) + std::string("\0x", 2);
        node.notifications.clear();
        Receive(Frame(text));
        ASSERT_EQ(node.notifications.size(), 1U) << url;
        const auto& notification = node.notifications[0];
        EXPECT_EQ(std::tuple(notification.cmdID, notification.optType, notification.len),
                  std::tuple(0x50003U, type, node.frames.back().size()));
        EXPECT_EQ(memcmp(&notification.destination, &fake_host::Get().appNodeID, 16), 0);
        EXPECT_EQ(notification.data, text);
    }
    node.notifications.clear();
    Receive(Frame(ReplyText("notifysomething", "78")));
    EXPECT_TRUE(node.notifications.empty());
}

TEST_F(SessionTest, ReceivedBytesAreDroppedOnTheHostsWishAndAfterStop)
{
    unsigned int need = 7;
    node.drop = true;
    EXPECT_EQ(session.OnSocketRecvData(0, "1111", 4, &need, nullptr), 0U);
    EXPECT_EQ(need, 0U);
    node.drop = false;
    EXPECT_EQ(session.OnSocketRecvData(0, "11", 2, nullptr, nullptr), 2U);
    fake_host::FailPoolAllocation(1);
    EXPECT_EQ(session.OnSocketRecvData(0, "11", 2, nullptr, nullptr), 2U);
    EXPECT_EQ(node.disconnects, 1);
    session.Stop();
    EXPECT_EQ(session.Start(&node, nullptr, 0), 0); // a stopped session stays deaf
    need = 7;
    EXPECT_EQ(session.OnSocketRecvData(0, "1111", 4, &need, nullptr), 0U);
    EXPECT_EQ(need, 7U);
    EXPECT_EQ(Run(KEST_CMD_REQUEST_LOGIN, LoginPayload("admin", "secret")), "failure 20000013");
}

TEST_F(SessionTest, WithoutANodeNothingIsSentAndNothingCrashes)
{
    CNetProtocolProcTWDECODERDevImp lone;
    FakeCommand command(KEST_CMD_REQUEST_LOGIN);
    lone.ProcOneCommand(&command, nullptr, 0);
    EXPECT_EQ(command.Answer(), "none");
    EXPECT_EQ(polls, 300) << "a login waits all the same";
    EXPECT_EQ(fake_host::CountAsserts(fake_host::kProtocolSource, 2015), 1);
    lone.Start(nullptr, nullptr, 0);
    const std::string frame = Frame(ReplyText("notifychannelstate", "1"));
    EXPECT_EQ(Offer(lone, frame), frame.size());
    EXPECT_EQ(fake_host::CountAsserts(fake_host::kProtocolSource, 236), 1);
    fake_host::FailPoolAllocation(1);
    EXPECT_EQ(Offer(lone, "1", true), 1U);
    LogIn();
    session.Start(nullptr, nullptr, 0);
    EXPECT_EQ(ClearWall(), "failure 2000000f");
    EXPECT_EQ(polls, 0);
}

TEST_F(SessionTest, UnusualPacketsAreReportedOrIgnored)
{
    using Session = CNetProtocolProcTWDECODERDevImp;
    EXPECT_EQ(Session::PacketProcCallback(NET_PACKETTYPE_DATA, "x", 1, nullptr), 0U);
    EXPECT_EQ(Session::PacketProcCallback(static_cast<tagNET_PACKETTYPE>(3), "x", 1, &session), 0U);
    EXPECT_EQ(fake_host::CountAsserts(fake_host::kProtocolSource, 226), 1);
    Receive(Frame("k"));
    EXPECT_EQ(Session::PacketProcCallback(NET_PACKETTYPE_DATA, nullptr, 5, &session), 0U);
    EXPECT_EQ(fake_host::CountAsserts(fake_host::kProtocolSource, 235), 1);
    EXPECT_EQ(SessionAccess::Stored(session), "k") << "no bytes, no message";
}

} // namespace
