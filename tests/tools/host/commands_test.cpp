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

SConsoleCommand Parse(const std::string& strLine) { return ParseScriptLine(SplitLine(strLine)); }

std::string Zeros(std::size_t nBytes) { return std::string(2 * nBytes, '0'); }

// A text in a field of nSize bytes.
std::string Field(const std::string& strText, std::size_t nSize)
{
    return tools::HexText(strText.data(), strText.size()) + Zeros(nSize - strText.size());
}

// Records of lines that need files and variables: each test has its own folder and source password.
class WallCommands : public testing::Test {
protected:
    WallCommands()
    {
        char szFolder[] = "/tmp/tvwall-host-XXXXXX";
        m_strFolder = mkdtemp(szFolder);
        ::setenv("TVWALL_SOURCE_PASSWORD", "env-secret", 1);
    }
    ~WallCommands() override
    {
        ::unsetenv("TVWALL_SOURCE_PASSWORD");
        std::filesystem::remove_all(m_strFolder);
    }

    std::string File(const std::string& strText) const
    {
        std::ofstream(m_strFolder + "/wall.json") << strText;
        return m_strFolder + "/wall.json";
    }

    std::string m_strFolder;
};

TEST_F(WallCommands, PrintNoPassword)
{
    const std::string strFile = File(R"({"windows": [
        {"id": 1, "x": 2, "y": 3, "width": 4, "height": 65535, "subWindows": [
            {"index": 1, "media": {"address": "a", "port": 7, "channel": 8, "user": "u", "password": "own-secret"}},
            {"index": 2, "media": {"address": "b", "port": 1, "channel": 8, "user": "u"}}]}]})");
    // The answer repeats the record behind another head.
    for (const std::string& strLine :
         {"wall apply " + strFile, std::string("media play 1 0 a:1 --channel 1 --source-user u")}) {
        const SConsoleCommand command = Parse(strLine);
        SAnswer answer{SAnswer::EKind::Buffer, 0,
                       CByteWriter().Zeros(8).Append(command.payload).Take().bytes};
        const std::size_t nBefore = answer.bytes.size();
        HideSecrets(command, answer);
        const std::string strBytes(answer.bytes.begin(), answer.bytes.end());
        EXPECT_EQ(strBytes.find("secret"), std::string::npos) << strLine;
        EXPECT_NE(strBytes.find('u'), std::string::npos) << strLine;
        EXPECT_EQ(strBytes.size(), nBefore);
        answer.bytes.resize(answer.bytes.size() - 300); // ends inside a password
        HideSecrets(command, answer);
    }
}

TEST(HostAnswers, AreReadableWhateverTheyHold)
{
    const auto Text = [](const char* szLine, const std::string& strAnswer) {
        SAnswer answer{SAnswer::EKind::Buffer, 0, *tools::ParseHex(strAnswer)};
        return ReadAnswer(Parse(szLine), answer).strText;
    };
    const std::string strHead = "10000600080000000000000000000000";
    const std::string strConfig = strHead + Zeros(16) + "0200000003000000" + Field("e\x1b", 2);
    EXPECT_EQ(Text("config", strConfig),
              "the decoder says\n  name:      e\\x1b\n  identity:  2\n  run mode:  3");
    EXPECT_EQ(Text("layout get", "020000000200000001000000"
                                 "08000000" +
                                     Field("", 256) + "ffffffff00000000"),
              "2 rows, 2 columns\n  row 0:  -  -\n  row 1:  -  -\n  at 4294967295 0:  8");
    EXPECT_EQ(Text("audio get", strHead + Zeros(32) +
                                    "01000000"
                                    "fbffffff00000000"),
              "windows with sound\n  WINDOW  INDEX  CHANNEL\n  -5      -      -");
    for (const char* szLine :
         {"wall clear", "info", "config", "layout get", "window-config get", "audio get", "group get"}) {
        EXPECT_NE(Text(szLine, strHead.substr(0, 10)).find("no whole record"), std::string::npos) << szLine;
    }
}

TEST(Options, SayWhatIsWrongBeforeAnythingIsOpened)
{
    const auto parse = [](std::vector<const char*> words) -> std::string {
        words.insert(words.begin(), {"tvwall-host", "--user", "u"});
        try {
            ParseOptions(static_cast<int>(words.size()), words.data());
            return "";
        } catch (const CExitError& error) {
            return error.what();
        }
    };
    EXPECT_EQ(parse({"--decoder", "h:1", "--log-level", "bogus", "login"}),
              "--log-level takes off, error, abnormal, normal or debug, not 'bogus'");
    EXPECT_EQ(parse({"--decoder", "h:0x50", "login"}),
              "--decoder takes HOST:PORT with a port from 1 to 65535, not 'h:0x50'");
    EXPECT_NE(parse({"window", "--help"}).find("admin window raise 1"), std::string::npos);
    EXPECT_NE(parse({"--help-all"}).find("\n  --osd ID,"), std::string::npos); // of a command in a group
    const std::string strGroup = parse({"media", "--help-all"});
    EXPECT_NE(strGroup.find("Usage: tvwall-host media play [OPTIONS] WINDOW"), std::string::npos) << strGroup;
    EXPECT_EQ(strGroup.find("window create"), std::string::npos) << strGroup;
    EXPECT_EQ(parse({"--decoder", "h:1", "wall", "apply", TVWALL_EXAMPLE_WALL}), "");
    EXPECT_THROW(CLineInput("/"), CUsageError);
}

TEST(MemPool, RefusesWhatAnUnfinishedMessageTakesBeyondItsLimit)
{
    const std::string strBlock(CMemPool::kMaxBytes / 2, 'x');
    CMemPool& pool = CMemPool::Instance();
    const char* hBuffer = pool.New(strBlock);
    EXPECT_THROW(pool.New(strBlock), std::bad_alloc);
    EXPECT_THROW(pool.Append(hBuffer, strBlock), std::bad_alloc);
    EXPECT_EQ(pool.Bytes(hBuffer).size(), strBlock.size());
    pool.TruncateFront(hBuffer, strBlock.size());
    EXPECT_TRUE(pool.Append(hBuffer, strBlock));
    pool.Delete(hBuffer);
    pool.Delete(pool.New(strBlock));
    EXPECT_EQ(pool.LiveBuffers(), 0U);
}

} // namespace
} // namespace standin_host
