// The example in the description of the link, held against what the session sends.

#include <fstream>
#include <iterator>
#include <regex>

#include "SessionFixture.h"

namespace {

// The text of the first code block of this language.
std::string Block(const std::string& language)
{
    std::ifstream file(TVWALL_SOURCE_DIR "/docs/link-protocol.md");
    const std::string page{std::istreambuf_iterator<char>(file), {}};
    const std::string fence = "```" + language + "\n";
    const auto begin = page.find(fence) + fence.size();
    return page.substr(begin, page.find("```", begin) - begin);
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
