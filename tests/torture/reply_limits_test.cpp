// Replies with more items than any wall has.

#include "SessionFixture.h"

namespace {

constexpr unsigned int GET = 0x50000;
constexpr size_t OPTION_HEAD = 16;
constexpr size_t GUIDS = 32;

using ReplyLimitsTest = SessionFixture;

TEST_F(ReplyLimitsTest, EveryListThatGrowsARecordHasAnEnd)
{
    LogIn();
    constexpr size_t MOST = 262144;
    const struct {
        const char* what;
        unsigned int nCmdID;
        std::string payload;
        std::vector<std::string> lists; // the elements around the items, innermost first
        size_t nEmpty, nItem;           // bytes of an answer without items, and of each
    } cases[] = {
        {"screens", 0x50006, "", {"td_channellist"}, 12, 268},
        {"groups", GET, Option(0x6000D, ""), {"channelgrouplist"}, OPTION_HEAD + 4, 300},
        {"windows", GET, Option(0x60016, ""), {"td_windowlist"}, OPTION_HEAD + GUIDS + 4, 8},
        {"sub-windows",
         GET,
         Option(0x60016, ""),
         {"td_subwindowlist", "item", "td_windowlist"},
         OPTION_HEAD + GUIDS + 4 + 8,
         8},
    };
    for (const auto& c : cases) {
        for (const size_t n : {MOST, MOST + 1}) {
            SCOPED_TRACE(c.what + std::to_string(n));
            std::string body = Repeat("<item/>", n);
            for (const std::string& name : c.lists) {
                body = Elem(name, body);
            }
            ReplyWith(ReplyText("", "%SEQ%", "0", "", body));
            FakeCommand command(c.nCmdID);
            std::string payload = c.payload;
            session.ProcOneCommand(&command, reinterpret_cast<unsigned char*>(payload.data()),
                                   static_cast<unsigned int>(payload.size()));
            EXPECT_EQ(command.nAnswers, 1);
            EXPECT_EQ(command.buffer.size(), n == MOST ? c.nEmpty + n * c.nItem : 0);
            EXPECT_EQ(command.record.dwResult, n == MOST ? 0 : 0x20000002U);
        }
    }
}

} // namespace
