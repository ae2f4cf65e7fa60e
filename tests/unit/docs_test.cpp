// The two pages that list every command, held against the samples, which CommandTest holds against the
// session.

#include <fstream>
#include <iterator>
#include <regex>

#include "CommandSamples.h"
#include "SessionFixture.h"

namespace {

std::string Page(const std::string& name)
{
    std::ifstream file(TVWALL_SOURCE_DIR "/docs/" + name);
    return {std::istreambuf_iterator<char>(file), {}};
}

const std::string kLink = Page("link-protocol.md");

TEST(DocsTest, TheTableOfCommandsIsThatOfTheSamples)
{
    const std::string page = Page("host-records.md");
    // Command, option type, handler, record, requests, answer type.
    const std::regex row(R"(\| (0x\w+) \| (0x\w+|none) \| `(\w+)` \| [^|]+ \| (`[^|]+`) \| ([^|]+) \|)");
    size_t rows = 0;
    for (std::sregex_iterator cells(page.begin(), page.end(), row), end; cells != end; ++cells, ++rows) {
        const auto number = [&](size_t n) {
            const std::string cell = (*cells)[n];
            return cell.starts_with("0x") ? std::stoul(cell, nullptr, 16) : 0;
        };
        const CommandSample& sample = CommandSampleOf((*cells)[3]);
        EXPECT_EQ(number(1), sample.cmdID) << sample;
        EXPECT_EQ(number(2), sample.optType) << sample;
        EXPECT_EQ(std::regex_replace(cells->str(4), std::regex("[`,]"), ""), sample.urls);
        EXPECT_EQ(number(5), sample.answerType) << sample;
        std::istringstream urls(sample.urls);
        for (std::string url; urls >> url;) {
            EXPECT_NE(kLink.find("`" + url + "`"), std::string::npos) << url;
        }
    }
    EXPECT_EQ(rows, CommandSamples().size());
}

// The text of the first code block of this language.
std::string Block(const std::string& language)
{
    const std::string fence = "```" + language + "\n";
    const auto begin = kLink.find(fence) + fence.size();
    return kLink.substr(begin, kLink.find("```", begin) - begin);
}

using LinkDocTest = SessionFixture;

TEST_F(LinkDocTest, TheExampleIsTheFrameThatTheSessionSends)
{
    LogIn();
    Run(0x50002, Option(0x60009, std::string(32, '\0') + std::string(Bytes().U32(7))));
    const std::string text = std::regex_replace(Block("xml"), std::regex("\n"), "\r\n");
    EXPECT_EQ(std::regex_replace(Block("hex"), std::regex("\\s"), ""), Hex(Frame(text)));
    const std::string seq = Elem("seq", Element(LastRequest(), "seq")); // differs from run to run
    EXPECT_EQ(LastRequest(), std::regex_replace(text, std::regex("<seq>259</seq>"), seq));
}

} // namespace
