// The stand-in host's commands: records as they go to the plug-in, answers as people and programs read
// them, and what is said of wrong input.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "AnswerText.h"
#include "ExitStatus.h"
#include "MemPool.h"
#include "Options.h"
#include "Script.h"
#include "Text.h"

namespace standin_host {
namespace {

SConsoleCommand Parse(const std::string& strLine) { return ParseScriptLine(SplitLine(strLine)); }

std::string Hex(const std::vector<uint8_t>& bytes) { return HexText(bytes.data(), bytes.size()); }

std::string Zeros(std::size_t nBytes) { return std::string(2 * nBytes, '0'); }

// A text in a field of nSize bytes.
std::string Field(const std::string& strText, std::size_t nSize)
{
    return HexText(strText.data(), strText.size()) + Zeros(nSize - strText.size());
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

TEST_F(WallCommands, ApplyAWallFileAndPrintNoPassword)
{
    const std::string strFile = File(R"({"windows": [
        {"id": 1, "x": 2, "y": 3, "width": 4, "height": 65535, "layer": 5, "subWindows": [
            {"index": 0, "osd": 6},
            {"index": 1, "media": {"address": "a", "port": 7, "channel": 8, "user": "u", "password": "own-secret",
                                   "type": 9, "streamType": 4294967295, "begin": 10, "end": 11}}]},
        {"id": 2, "x": 0, "y": 0, "width": 1, "height": 1, "mode": 16, "subWindows": [
            {"index": 0, "media": {"address": "b", "port": 1, "user": "v",
                                   "channel": "6b29fc40-ca47-1067-b31d-00dd010662da"}}]}]})");
    SConsoleCommand command = Parse("wall apply " + strFile);
    EXPECT_EQ(command.nCmdID, 0x50001U);
    EXPECT_EQ(Hex(command.payload.bytes),
              "100006000c070000"
              "02000000"
              "010005000200020003000400ffff02000000"
              "00000600" +
                  Zeros(576) +
                  "00000000ffffffff"
                  "010000000900060007000000"
                  "0a0000000b000000ffffffff" +
                  Zeros(16) + Field("a", 32) + Field("u", 256) + Field("own-secret", 256) +
                  "08000000"
                  "02000000100000000000010001000100"
                  "0000"
                  "00000000000000000100" +
                  Zeros(14) + "40fc296b47ca6710b31d00dd010662da" + Field("b", 32) + Field("v", 256) +
                  Field("env-secret", 256) + "ffffffff");

    // The answer repeats the record behind another head.
    for (const std::string& strLine : {"wall apply " + strFile, std::string("media play 1 0 a:1 --channel 1 "
                                                                            "--source-user u")}) {
        command = Parse(strLine);
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

TEST(HostAnswers, AreReadByNameAndAsPeopleReadThem)
{
    const std::string strHead = "10000600080000000000000000000000";
    const std::string strXml =
        R"(<?xml version="1.0"?><response><id>{A}</id><baseInfo><errorcode>0</errorcode>)"
        "<enableborder>1</enableborder><enableshowwinid>0</enableshowwinid></baseInfo></response>";
    const struct {
        const char* szLine;
        std::string strAnswer;
        std::string strText;
        std::string strFields; // as JSON, behind the head's fields
    } cases[] = {
        {"wall clear", strHead, "done", "}"},
        {"layout set 1 1", "", "done", "null"},
        {"info",
         strHead + Zeros(16) + Field("north\x1b", 64) + "ffffffff" + Field("D-8", 64) + Field("", 64) +
             Field("1.2", 64) + Field("2026", 64) + Field("5.4", 64) + Field("7", 64),
         "the decoder says\n  name:              north\\x1b\n  model:             -1\n  device type:       "
         "D-8\n"
         "  MAC address:\n  software version:  1.2\n  build date:        2026\n  kernel version:    5.4\n"
         "  data version:      7",
         R"(,"decoder":"{00000000-0000-0000-0000-000000000000}","name":"north\u001b","model":-1,"deviceType":"D-8",)"
         R"("mac":"","softwareVersion":"1.2","buildDate":"2026","kernelVersion":"5.4","dataVersion":"7"})"},
        {"config", strHead + Zeros(16) + "0200000003000000" + Field("east", 4),
         "the decoder says\n  name:      east\n  identity:  2\n  run mode:  3",
         R"(,"wall":"{00000000-0000-0000-0000-000000000000}","identity":2,"runMode":3,"name":"east"})"},
        {"layout get",
         "020000000200000002000000"
         "07000000" +
             Field("left", 256) +
             "0000000001000000"
             "08000000" +
             Field("", 256) + "ffffffff00000000",
         "2 rows, 2 columns\n  row 0:  -       -\n  row 1:  7 left  -\n  at 4294967295 0:  8",
         R"({"rows":2,"columns":2,"screens":[{"id":7,"name":"left","x":0,"y":1},{"id":8,"name":"","x":4294967295,"y":0}]})"},
        {"window-config get", strHead + Field(strXml, strXml.size() + 1), "borders on, window ids off",
         R"(,"node":"{A}","borders":true,"windowIds":false})"},
        {"audio get",
         strHead + Zeros(32) +
             "02000000"
             "0100000001000000"
             "0000000009000000"
             "fbffffff00000000",
         "windows with sound\n  WINDOW  INDEX  CHANNEL\n  1       0      9\n  -5      -      -",
         R"(,"wall":"{00000000-0000-0000-0000-000000000000}","decoder":"{00000000-0000-0000-0000-000000000000}",)"
         R"("windows":[{"id":1,"subWindows":[{"index":0,"channel":9}]},{"id":-5,"subWindows":[]}]})"},
        {"group get",
         strHead + "01000000" + Zeros(16) + "070000000000000009000000" + Field("T\xc3\xbcren", 256) +
             Field("1,2,3,4,5,6,7,89", 16),
         "channel groups\n  ID  INTERVAL  CHANNELS          NAME\n  7   9         1,2,3,4,5,6,7,89  "
         "T\xc3\xbcren",
         R"(,"groups":[{"id":7,"interval":9,"name":"T)"
         "\xc3\xbc"
         R"(ren","channels":"1,2,3,4,5,6,7,89"}]})"},
    };
    for (const auto& expected : cases) {
        const SConsoleCommand command = Parse(expected.szLine);
        SAnswer answer{SAnswer::EKind::Buffer, 0, *ParseHex(expected.strAnswer)};
        const SReadAnswer read = ReadAnswer(command, answer);
        EXPECT_TRUE(read.bGood) << expected.szLine;
        EXPECT_EQ(read.strText, expected.strText);
        const bool bHead = expected.strFields.front() == ',' || expected.strFields == "}";
        EXPECT_EQ(read.pFields == nullptr ? "null" : read.pFields->dump(),
                  (bHead ? R"({"optType":393232,"result":0,"errorCode":0)" : "") + expected.strFields);
        answer.bytes.resize(answer.bytes.size() - std::min<std::size_t>(answer.bytes.size(), 10));
        if (!expected.strAnswer.empty()) {
            const SReadAnswer cut = ReadAnswer(command, answer);
            EXPECT_FALSE(cut.bGood) << expected.szLine;
            EXPECT_NE(cut.strText.find("no whole record"), std::string::npos) << cut.strText;
        }
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
