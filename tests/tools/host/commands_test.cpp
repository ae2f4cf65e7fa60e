// The stand-in host's commands: records as they go to the plug-in, answers as people and programs read
// them, and what is said of wrong input.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "Base/ExitStatus.h"
#include "Base/LineInput.h"
#include "Console/AnswerText.h"
#include "Console/Options.h"
#include "Console/WordSplitting.h"
#include "Host/MemPool.h"
#include "Tools/Common/Hex.h"

namespace standin_host {
namespace {

ConsoleCommand Parse(const std::string& line) { return ParseScriptLine(SplitLine(line)); }

std::string Zeros(std::size_t bytes) { return std::string(2 * bytes, '0'); }

// A text in a field of size bytes.
std::string Field(const std::string& text, std::size_t size)
{
    return tools::HexText(text.data(), text.size()) + Zeros(size - text.size());
}

// Records of lines that need files and variables: each test has its own folder and source password.
class WallCommands : public testing::Test {
protected:
    WallCommands()
    {
        char folder[] = "/tmp/tvwall-host-XXXXXX";
        m_folder = mkdtemp(folder);
        ::setenv("TVWALL_SOURCE_PASSWORD", "env-secret", 1);
    }
    ~WallCommands() override
    {
        ::unsetenv("TVWALL_SOURCE_PASSWORD");
        std::filesystem::remove_all(m_folder);
    }

    std::string File(const std::string& text) const
    {
        std::ofstream(m_folder + "/wall.json") << text;
        return m_folder + "/wall.json";
    }

    std::string m_folder;
};

TEST_F(WallCommands, PrintNoPassword)
{
    const std::string path = File(R"({"windows": [
        {"id": 1, "x": 2, "y": 3, "width": 4, "height": 65535, "subWindows": [
            {"index": 1, "media": {"address": "a", "port": 7, "channel": 8, "user": "u", "password": "own-secret"}},
            {"index": 2, "media": {"address": "b", "port": 1, "channel": 8, "user": "u"}}]}]})");
    // The answer repeats the record behind another head.
    for (const std::string& line :
         {"wall apply " + path, std::string("media play 1 0 a:1 --channel 1 --source-user u")}) {
        const ConsoleCommand command = Parse(line);
        HostAnswer answer{HostAnswer::Kind::Buffer, 0,
                      ByteWriter().Zeros(8).Append(command.payload).Take().bytes};
        const std::size_t before = answer.bytes.size();
        HideSecrets(command, answer);
        const std::string content(answer.bytes.begin(), answer.bytes.end());
        EXPECT_EQ(content.find("secret"), std::string::npos) << line;
        EXPECT_NE(content.find('u'), std::string::npos) << line;
        EXPECT_EQ(content.size(), before);
        answer.bytes.resize(answer.bytes.size() - 300); // ends inside a password
        HideSecrets(command, answer);
    }
}

TEST(HostAnswers, AreReadableWhateverTheyHold)
{
    const auto Text = [](const char* typed, const std::string& answerText) {
        HostAnswer answer{HostAnswer::Kind::Buffer, 0, *tools::ParseHex(answerText)};
        return ReadAnswer(Parse(typed), answer).text;
    };
    const std::string head = "10000600080000000000000000000000";
    const std::string config = head + Zeros(16) + "0200000003000000" + Field("e\x1b", 2);
    EXPECT_EQ(Text("config", config),
              "the decoder says\n  name:      e\\x1b\n  identity:  2\n  run mode:  3");
    EXPECT_EQ(Text("layout get", "020000000200000001000000"
                                 "08000000" +
                                     Field("", 256) + "ffffffff00000000"),
              "2 rows, 2 columns\n  row 0:  -  -\n  row 1:  -  -\n  at 4294967295 0:  8");
    EXPECT_EQ(Text("audio get", head + Zeros(32) +
                                    "01000000"
                                    "fbffffff00000000"),
              "windows with sound\n  WINDOW  INDEX  CHANNEL\n  -5      -      -");
    for (const char* typed :
         {"wall clear", "info", "config", "layout get", "window-config get", "audio get", "group get"}) {
        EXPECT_NE(Text(typed, head.substr(0, 10)).find("no whole record"), std::string::npos) << typed;
    }
}

TEST(Options, SayWhatIsWrongBeforeAnythingIsOpened)
{
    const auto parse = [](std::vector<const char*> words) -> std::string {
        words.insert(words.begin(), {"tvwall-host", "--user", "u"});
        try {
            ParseOptions(static_cast<int>(words.size()), words.data());
            return "";
        } catch (const ExitError& error) {
            return error.what();
        }
    };
    EXPECT_EQ(parse({"--decoder", "h:1", "--log-level", "bogus", "login"}),
              "--log-level takes off, error, abnormal, normal or debug, not 'bogus'");
    EXPECT_EQ(parse({"--decoder", "h:0x50", "login"}),
              "--decoder takes HOST:PORT with a port from 1 to 65535, not 'h:0x50'");
    EXPECT_NE(parse({"window", "--help"}).find("admin window raise 1"), std::string::npos);
    EXPECT_NE(parse({"--help-all"}).find("\n  --osd ID,"), std::string::npos); // of a command in a group
    const std::string group = parse({"media", "--help-all"});
    EXPECT_NE(group.find("Usage: tvwall-host media play [OPTIONS] WINDOW"), std::string::npos) << group;
    EXPECT_EQ(group.find("window create"), std::string::npos) << group;
    EXPECT_EQ(parse({"--decoder", "h:1", "wall", "apply", TVWALL_EXAMPLE_WALL}), "");
    EXPECT_THROW(LineInput("/"), UsageError);
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
