#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>
#include <vector>

#include "SessionFixture.h"

namespace {

std::string ReadWhole(const std::filesystem::path& path)
{
    std::ifstream file(path);
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

const std::string LINK_DOC = ReadWhole(TVWALL_SOURCE_DIR "/docs/link-protocol.md");

// docs/host-records.md lists every command by hand; here its table meets what the session really does.
class HostRecordsDocTest : public SessionFixture {
protected:
    static constexpr unsigned int NO_OPTION = 0;
    struct Row {
        std::vector<std::string> urls;
        std::string answerType;
    };

    HostRecordsDocTest()
    {
        std::istringstream doc(ReadWhole(TVWALL_SOURCE_DIR "/docs/host-records.md"));
        for (std::string line; std::getline(doc, line);) {
            if (line.starts_with("| 0x")) {
                AddRow(line);
            }
        }
    }

    // The requests that a command led to, and the answer that it got.
    std::pair<std::vector<std::string>, std::string> Observe(unsigned int nCmdID, unsigned int nOptType)
    {
        node.frames.clear();
        const std::string record(64, '\0');
        const std::string answer =
            Run(nCmdID, nCmdID == 0x101 ? LoginPayload("admin", "secret") : Option(nOptType, record));
        std::vector<std::string> urls;
        for (const std::string& frame : node.frames) {
            urls.push_back(Element(frame, "url"));
        }
        return {urls, answer};
    }

    std::map<std::pair<unsigned int, unsigned int>, Row> rows;

private:
    void AddRow(const std::string& line)
    {
        std::vector<std::string> cells;
        std::istringstream text(line.substr(1));
        for (std::string cell; std::getline(text, cell, '|');) {
            cells.push_back(cell.substr(1, cell.size() - 2));
        }
        ASSERT_EQ(cells.size(), 7U) << line;
        if (cells[1] == "any") { // its options have rows of their own
            return;
        }
        Row row{{}, cells[5]};
        std::istringstream urls(cells[4]);
        for (std::string url; std::getline(urls, url, '`') && std::getline(urls, url, '`');) {
            row.urls.push_back(url);
        }
        const auto nOptType =
            cells[1] == "none" ? NO_OPTION : static_cast<unsigned int>(std::stoul(cells[1], nullptr, 16));
        const auto key = std::pair(static_cast<unsigned int>(std::stoul(cells[0], nullptr, 16)), nOptType);
        EXPECT_TRUE(rows.emplace(key, row).second) << line;
    }
};

TEST_F(HostRecordsDocTest, ItsTableIsWhatTheDispatchDoes)
{
    LogIn();
    onPoll = [this] { Receive(Frame(ReplyText("dowallclear", Element(LastRequest(), "seq")))); };
    std::size_t nMet = 0;
    std::vector<std::pair<unsigned int, unsigned int>> all = {{0x101, NO_OPTION}};
    for (unsigned int nCmdID = 0x50000; nCmdID < 0x50010; ++nCmdID) {
        all.emplace_back(nCmdID, NO_OPTION);
        for (unsigned int nType = 0; nType < 0x20 && nCmdID < 0x50003; ++nType) {
            all.emplace_back(nCmdID, 0x50000 + nType);
            all.emplace_back(nCmdID, 0x60000 + nType);
        }
    }
    for (const auto& [nCmdID, nOptType] : all) {
        SCOPED_TRACE(std::to_string(nCmdID) + " option " + std::to_string(nOptType));
        const auto [urls, answer] = Observe(nCmdID, nOptType);
        for (const std::string& url : urls) {
            EXPECT_NE(LINK_DOC.find("`" + url + "`"), std::string::npos) << url;
        }
        const auto row = rows.find({nCmdID, nOptType});
        if (row == rows.end()) {
            EXPECT_TRUE(urls.empty());
            EXPECT_EQ(answer, "none");
            continue;
        }
        ++nMet;
        EXPECT_EQ(urls, row->second.urls);
        if (row->second.answerType.starts_with("0x")) {
            const auto nType = std::stoul(row->second.answerType, nullptr, 16);
            EXPECT_TRUE(answer.starts_with("buffer " + Hex(Bytes().U32(nType).U16(8)))) << answer;
        } else {
            EXPECT_TRUE(answer.starts_with("buffer ")) << answer;
        }
    }
    EXPECT_EQ(nMet, rows.size()) << "a row for a command that nobody serves";
}

std::string FromHex(const std::string& hex)
{
    std::stringstream words(hex);
    std::string bytes;
    for (std::string word; words >> word;) {
        bytes += static_cast<char>(std::stoi(word, nullptr, 16));
    }
    return bytes;
}

std::string Replaced(std::string text, const std::string& what, const std::string& by)
{
    for (size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size()) {
        text.replace(at, what.size(), by);
    }
    return text;
}

// The lines of the first code block of this language in the document of the link.
std::string Block(const std::string& language)
{
    const std::string fence = "```" + language + "\n";
    const auto begin = LINK_DOC.find(fence) + fence.size();
    return LINK_DOC.substr(begin, LINK_DOC.find("```", begin) - begin);
}

using LinkProtocolDocTest = SessionFixture;

TEST_F(LinkProtocolDocTest, ItsExampleIsTheFrameThatTheSessionSends)
{
    LogIn();
    Run(0x50002, Option(0x60009, std::string(32, '\0') + std::string(Bytes().U32(7))));
    const std::string text = Replaced(Block("xml"), "\n", "\r\n");
    EXPECT_EQ(FromHex(Block("hex")), Frame(text));

    // The number differs from run to run.
    const std::string ours = Element(LastRequest(), "seq");
    const std::string withOurs = Replaced(text, "<seq>259</seq>", "<seq>" + ours + "</seq>");
    EXPECT_EQ(node.frames.back(), Frame(withOurs));
}

TEST(Docs, EveryTestThatTheyNameIsThere)
{
    std::string tests;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(TVWALL_SOURCE_DIR "/tests")) {
        tests += entry.is_regular_file() ? ReadWhole(entry.path()) : "";
    }
    std::size_t nNamed = 0;
    for (const auto& entry : std::filesystem::directory_iterator(TVWALL_SOURCE_DIR "/docs")) {
        const std::string doc = ReadWhole(entry.path());
        const std::regex name("`([A-Z][A-Za-z]+)\\.([A-Z][A-Za-z]+)`");
        for (std::sregex_iterator match(doc.begin(), doc.end(), name), end; match != end; ++match, ++nNamed) {
            const std::string line = "(" + match->str(1) + ", " + match->str(2) + ")";
            EXPECT_NE(tests.find(line), std::string::npos) << entry.path() << ": " << line;
        }
    }
    EXPECT_GE(nNamed, 34U);
}

} // namespace
