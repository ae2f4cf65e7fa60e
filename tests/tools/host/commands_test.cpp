// What the stand-in host makes of answers, whatever they hold; tests/e2e has its commands, answers and
// complaints in lines of text.

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include <nlohmann/json.hpp>

#include "Base/WordSplitting.h"
#include "Commands/Records/DeviceCodes.h"
#include "Console/AnswerText.h"
#include "Host/MemPool.h"

namespace standin_host {
namespace {

ConsoleCommand Parse(const std::string& line) { return ParseScriptLine(SplitLine(line)); }

TEST(HostAnswers, HoldNoPasswordWhereverTheyEnd)
{
    ::setenv("TVWALL_SOURCE_PASSWORD", "env-secret", 1);
    const ConsoleCommand command = Parse("media play 1 0 a:1 --channel 1 --source-user u");
    ::unsetenv("TVWALL_SOURCE_PASSWORD");
    // The answer repeats the record behind another head.
    HostAnswer answer{HostAnswer::Kind::Buffer, 0,
                      ByteWriter().Zeros(8).Append(command.payload).Take().bytes};
    for (; !answer.bytes.empty(); answer.bytes.pop_back()) {
        HostAnswer shown = answer;
        HideSecrets(command, shown);
        const std::string content(shown.bytes.begin(), shown.bytes.end());
        ASSERT_EQ(content.find("env-s"), std::string::npos);
        ASSERT_EQ(content.size(), answer.bytes.size());
    }
}

TEST(HostAnswers, AreReadableWhateverTheyHold)
{
    const auto text = [](const char* typed, ByteWriter& answer) {
        return ReadEnding(Parse(typed),
                          {HostAnswer{HostAnswer::Kind::Buffer, 0, answer.Take().bytes}, {}, false, false},
                          {})
            .text;
    };
    const Record head = ByteWriter().U32(0x60010).U32(8).Zeros(8).Take();
    EXPECT_EQ(text("config", ByteWriter().Append(head).Zeros(16).U32(2).U32(3).Text("e\x1b", 3)),
              "the decoder says\n  name:      e\\x1b\n  identity:  2\n  run mode:  3");
    EXPECT_EQ(text("layout get", ByteWriter().U32(2).U32(2).U32(1).U32(8).Zeros(256).I32(-1).U32(0)),
              "2 rows, 2 columns\n  row 0:  -  -\n  row 1:  -  -\n  at 4294967295 0:  8");
    EXPECT_EQ(text("audio get", ByteWriter().Append(head).Zeros(32).U32(1).I32(-5).U32(0)),
              "windows with sound\n  WINDOW  INDEX  CHANNEL\n  -5      -      -");
    for (const char* typed :
         {"wall clear", "info", "config", "layout get", "window-config get", "audio get", "group get"}) {
        EXPECT_NE(text(typed, ByteWriter().Zeros(5)).find("no whole record"), std::string::npos) << typed;
    }
}

TEST(MemPool, RefusesWhatAnUnfinishedMessageTakesBeyondItsLimit)
{
    const std::string block(MemPool::kMaxBytes / 2, 'x');
    MemPool& pool = MemPool::Instance();
    const char* handle = pool.New(block);
    EXPECT_THROW(pool.New(block), std::bad_alloc);
    EXPECT_THROW(pool.Append(handle, block), std::bad_alloc);
    EXPECT_EQ(pool.Bytes(handle).size(), block.size());
    pool.TruncateFront(handle, block.size());
    EXPECT_TRUE(pool.Append(handle, block));
    pool.Delete(handle);
    pool.Delete(pool.New(block));
    EXPECT_EQ(pool.LiveBuffers(), 0U);
}

} // namespace
} // namespace standin_host
