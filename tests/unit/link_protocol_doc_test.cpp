#include <fstream>
#include <set>
#include <sstream>

#include "SessionFixture.h"

namespace {

// docs/link-protocol.md is written by hand; here it meets what the session really sends.
class LinkProtocolDocTest : public SessionFixture {
protected:
    LinkProtocolDocTest()
    {
        std::ifstream file(TVWALL_SOURCE_DIR "/docs/link-protocol.md");
        std::stringstream text;
        text << file.rdbuf();
        doc = text.str();
    }

    // The lines of the first code block of this language.
    std::string Block(const std::string& language) const
    {
        const std::string fence = "```" + language + "\n";
        const auto begin = doc.find(fence);
        const auto end = doc.find("```", begin + fence.size());
        return begin == std::string::npos ? "" : doc.substr(begin + fence.size(), end - begin - fence.size());
    }

    std::string doc;
};

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

TEST_F(LinkProtocolDocTest, ItNamesEveryRequestThatAnyCommandLeadsTo)
{
    LogIn();
    onPoll = [this] { Receive(Frame(ReplyText("dowallclear", Element(LastRequest(), "seq")))); };
    Run(0x101, LoginPayload("admin", "secret"));
    for (unsigned int nCmdID = 0x50000; nCmdID <= 0x50008; ++nCmdID) {
        for (unsigned int nType = 0; nType < 0x20; ++nType) {
            Run(nCmdID, Option(0x50000 + nType, std::string(64, '\0')));
            Run(nCmdID, Option(0x60000 + nType, std::string(64, '\0')));
        }
    }
    std::set<std::string> urls;
    for (const std::string& frame : node.frames) {
        urls.insert(Element(frame, "url"));
    }
    EXPECT_GE(urls.size(), 9U);
    for (const std::string& url : urls) {
        EXPECT_NE(doc.find("`" + url + "`"), std::string::npos) << url;
    }
}

} // namespace
