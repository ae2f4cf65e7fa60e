// The kit in a program that defines none of the host's functions: what only it does. That its bytes are right
// is held against another opinion in tests/tools/host.

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>

#include "CmdProcObject.h"
#include "MonitorTvwComm.h"
#include "tvwall/answers.h"
#include "tvwall/ask.h"
#include "tvwall/commands.h"
#include "tvwall/receive_buffer.h"

namespace {

using namespace tvwall;

std::string g_texts;

void Keep(const char* text, const char* source, int line)
{
    g_texts += std::string(text) + '|' + source + ':' + std::to_string(line) + '\n';
}

template <class Value>
std::string Why(const Result<Value>& result)
{
    return result ? "read" : result.Why().Text();
}

std::string Little(std::initializer_list<unsigned int> numbers)
{
    std::string bytes;
    for (const unsigned int number : numbers) {
        bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
    }
    return bytes;
}

TEST(Kit, RecordsWriteToTheOutputThatIsSetAndNowhereAtFirst)
{
    ORVA2_CLIENT_TVW::S_MTvw_Wall_Media record;
    record._numwind = 3;
    record.Dump();
    SetRecordOutput(nullptr, Keep);
    record.Dump();
    record.VerifyData();
    EXPECT_EQ(g_texts, "ASSERT|MonitorTvwCommMedia:70\n");
    EXPECT_EQ(record._numwind, 0U);
    SetRecordOutput(Keep, nullptr);
    record.Dump();
    EXPECT_NE(g_texts.find("S_MTvw_Wall_Media numwind:0"), std::string::npos);
    SetRecordOutput(nullptr, nullptr);
}

TEST(Kit, SaysWhereAndWhyBytesCannotBeRead)
{
    const std::string head = Little({0x60016, 8, 0, 0}) + std::string(32, '\0');
    const std::pair<std::string, const char*> cases[] = {
        {Why(ReadLayout(Little({1, 2}))), "byte 0, the record's head: 12 bytes needed, 8 left"},
        {Why(ReadLayout(Little({1, 2, 0xFFFFFFFF, 4}))),
         "byte 12, screens: 1151051235060 bytes needed, 4 left"},
        {Why(ReadSound(head + Little({2, 1, 0, 9, 7}))),
         "byte 68, windows[1].subWindows: 56 bytes needed, 0 left"},
        {Why(ReadSound(head.substr(0, 50))), "byte 16, the record's head: 36 bytes needed, 32 left"},
        {Why(ReadSound(head.substr(0, 5))), "byte 0, the head of the answer: 16 bytes needed, 5 left"},
        {Why(ReadChannelGroups(head)), "byte 0, nOptType: the answer is one to option type 393238"},
        {Why(ReadDone(1, Little({1, 9, 0, 0}))), "byte 4, wResultLen: is 9, not 8"},
        {Why(ReadDone(0, head)), "byte 0, the answer: there are bytes, and none belong here"},
        {Why(ReadDisplaySwitches(Little({0x60012, 8, 0, 0}) + "<response/>")),
         "byte 16, response/baseInfo/enableborder: is not there, or no number"},
        {Why(ReadNotification(0x60000, std::string("<a>"))).substr(0, 36),
         "byte 0, the text: is not well-formed"},
    };
    for (const auto& [why, wanted] : cases) {
        EXPECT_EQ(why, wanted);
    }
    EXPECT_THROW((void)*ReadLayout({}), std::bad_variant_access);
}

TEST(Kit, RefusesWhatNoRecordCanHold)
{
    const InWindow<SubWindowIndex> low{{-1}, {{2147483648}}};
    const std::vector<InWindow<SubWindowPlayback>> many(65536);
    const std::vector<WallWindow> masked{{{1}, {}, {{{0}, {0}, Source{.recordMask = 1}}}}};
    const std::pair<std::function<Command()>, std::string> cases[] = {
        {[] { return RaiseWindow({-1}); }, "the window id -1 is not between 0 and 4294967295"},
        {[&] { return StopMedia({low}); },
         "the sub-window index 2147483648 is not between -2147483648 and 2147483647"},
        {[] { return LogIn(std::string(64, 'u'), "secret"); }, "nothing"},
        {[] { return LogIn(std::string(65, 'u'), "secret"); },
         "the user name has more than 64 bytes, or a zero byte"},
        {[] { return LogIn("u", std::string(1, '\0')); },
         "the password has more than 64 bytes, or a zero byte"},
        {[&] { return ControlPlayback(many); }, "a number of items 65536 is not between 0 and 65535"},
        {[&] { return SetWall(masked); }, "a whole wall has no record masks and selectors"},
    };
    for (const auto& [make, wanted] : cases) {
        std::string said = "nothing";
        try {
            (void)make();
        } catch (const std::logic_error& error) {
            said = error.what();
        }
        EXPECT_EQ(said, wanted);
    }
}

// Runs a command when it is told to, between the two references of a queue.
struct OneCommandProcessor final : CNetProtocolProc {
    void ProcOneCommand(CCmdProcObject*, unsigned char*, unsigned int) override {}
    void AddOneCmd(CCmdProcObject* cmd, unsigned char* buf, unsigned int len) override
    {
        cmd->AddReference(11);
        asked = cmd;
        payload.assign(buf, buf + len);
    }
    CCmdProcObject* asked = nullptr;
    std::string payload;
};

TEST(Kit, TellsWhatCameOfACommandOnceItHasRun)
{
    using Answer = std::function<void(CCmdProcObject&)>;
    ORVA_NET_PROTOCOL::_kest_net_reply refused{};
    refused.dwResult = 0x2000005C;
    const std::pair<Answer, std::string> cases[] = {
        {[](auto& cmd) { cmd.ReplyBuffer("grid", 4); }, "done:grid"},
        {[](auto& cmd) { cmd.ReplyBuffer(nullptr, 0); }, "done:"},
        {[refused](auto& cmd) { cmd.ReplyRecord(refused); }, "wrong password:"},
        {[](auto&) {}, "no answer:"},
    };
    for (const auto& [answer, told] : cases) {
        OneCommandProcessor processor;
        auto future = Ask(processor, SetLayout(2, 3));
        EXPECT_EQ(processor.asked->GetRequestCommand(), 0x50005U);
        EXPECT_EQ(processor.payload.substr(0, 8), Little({2, 3}));
        answer(*processor.asked);
        EXPECT_NE(future.wait_for(std::chrono::seconds(0)), std::future_status::ready);
        processor.asked->DecReference(11);
        const Outcome outcome = future.get();
        EXPECT_EQ(outcome.Text() + (':' + outcome.answer), told);
        EXPECT_EQ(static_cast<bool>(outcome), told.starts_with("done"));
    }
}

// Frames of one digit and as many characters.
struct DigitFrames final : CSocketDataObserver {
    unsigned int OnSocketRecvData(int, const char* data, unsigned int len, unsigned int* needed,
                                  void* context) override
    {
        ++calls;
        const auto frame = static_cast<unsigned int>(*data - '0') + 1;
        if (context == nullptr || len < frame) {
            *needed = context == nullptr ? 0 : frame - len;
            return 0;
        }
        frames += std::string(data, frame) + ' ';
        return frame + (len == frame ? 0 : OnSocketRecvData(0, data + frame, len - frame, needed, context));
    }
    std::string frames;
    int calls = 0;
};

TEST(Kit, KeepsReceivedBytesUntilTheyMakeAFrame)
{
    const std::string bytes = "3abc04wxyz";
    for (std::size_t piece = 1; piece <= bytes.size(); ++piece) {
        DigitFrames observer;
        ReceiveBuffer buffer(8);
        for (std::size_t at = 0; at < bytes.size(); at += piece) {
            EXPECT_TRUE(buffer.Take(bytes.substr(at, piece), observer, &observer));
        }
        EXPECT_EQ(observer.frames, "3abc 0 4wxyz ");
        EXPECT_LE(observer.calls, 5) << "called for less than it needs, in pieces of " << piece;
        const int calls = observer.calls;
        EXPECT_TRUE(buffer.Take({}, observer, &observer));
        EXPECT_EQ(observer.calls, calls) << "called for nothing";
    }
    DigitFrames observer;
    ReceiveBuffer buffer(4);
    EXPECT_TRUE(buffer.Take(std::string("9abcdefg"), observer, nullptr)) << "is dropped";
    EXPECT_TRUE(buffer.Take(std::string("9abc"), observer, &observer));
    EXPECT_FALSE(buffer.Take(std::string("d"), observer, &observer)) << "is more than may be kept";
}

} // namespace
