#include <gtest/gtest.h>

#include "HeadScanChecks.h"
#include "HeavyMessages.h"

namespace {

std::string Nested(size_t levels, const std::string& inner)
{
    return Repeat("<a>", levels) + Repeat("</a>", levels) + inner;
}

} // namespace

TEST(MessageHead, HeavyMessagesHaveTheHeadOfTheDocumentInThreeLooksAtEachByte)
{
    constexpr size_t kLen = 150000; // nests less deep than the scan follows
    for (const HeavyMessage& message : HeavyMessages(kLen)) {
        EXPECT_TRUE(ScanAgreesWithDocument(message.text)) << message.what;
    }
}

TEST(MessageHead, OddPiecesAnywhereLeaveTheHeadOfTheDocument)
{
    const std::string parts[] = {"<td_command>", "<td_header>", "<url>", "</url>", "<seq>", "</seq>", ""};
    auto pieces = MessagePieces();
    pieces.insert(pieces.end(), {"<url", "</seq", "\\", "?", "!", "\t", "<a x= '>'/>", "<![CDATA[x]]>",
                                 "<a x='/'\"/>", "<a \xFF/>", "&#x0000041;",
                                 "<td_commandx><td_header><url>n</url></td_header></td_commandx>"});
    std::string before;
    for (const std::string& part : parts) {
        std::string after;
        for (const std::string& later : std::vector(&part, std::end(parts))) {
            after += later;
        }
        for (const std::string_view first : pieces) {
            for (const std::string_view second : pieces) {
                const std::string message = before + std::string(first) + std::string(second) + after;
                ASSERT_TRUE(ScanAgreesWithDocument(message)) << message;
            }
        }
        before += part;
    }
}

TEST(MessageHead, LooksAtNothingAfterTheHead)
{
    const std::string head = "<td_command><td_header><url>u</url><seq>7</seq>";
    const std::string text = head + "</td_header><td_body/></td_command>";
    CountedText counted(text);
    CMessageHeadScan<CountedText>(counted, 1).Run();
    EXPECT_EQ(counted.Seen(), head.size());
    EXPECT_EQ(ReadMessageHead({text.data(), size_t{1} << 31U}).url,
              std::nullopt); // nothing of the 2 GiB is read
}

TEST(MessageHead, ATextEndsWhereItNestsTooDeeply)
{
    constexpr size_t kMost = 65535;
    const std::string head = "<td_command><td_header><url>u</url>";
    const std::string seq = "<seq>7</seq>";
    EXPECT_EQ(ReadMessageHead(Nested(kMost, head + seq)).seq, "7");
    EXPECT_EQ(ReadMessageHead(Nested(kMost + 1, head + seq)).url, std::nullopt);
    EXPECT_EQ(ReadMessageHead(head + Nested(kMost - 2, seq)).seq, "7");
    EXPECT_EQ(ReadMessageHead(head + Nested(kMost - 1, seq)).url, "u");
    EXPECT_EQ(ReadMessageHead(head + Nested(kMost - 1, seq)).seq, std::nullopt);
    const std::string outer = "<td_command><td_header><x>";
    EXPECT_EQ(ReadMessageHead(outer + Repeat("<a>", kMost - 3) + "</x><url>u</url>").url, "u");
    EXPECT_EQ(ReadMessageHead(outer + Repeat("<a>", kMost - 2) + "</x><url>u</url>").url, std::nullopt);
}

TEST(MessageHead, TagsThatTheDocumentCannotHoldAreNoElements)
{
    const std::string head = "<td_command><td_header>";
    for (const size_t tag : {0xFFFFFU, 0x100000U, 0x1FFFFFU, 0x200000U, 0x2FFFFFU, 0x300000U}) {
        const std::string text = head + "<url" + std::string(tag - 5, ' ') + ">u</url><seq>7</seq>";
        EXPECT_EQ(ReadMessageHead(text).url, DocumentHead(text).url) << tag;
    }
    for (const size_t tag : {1023U, 1024U}) {
        const std::string text = head + "<url>u</url" + std::string(tag - 6, ' ') + "><seq>7</seq>";
        EXPECT_EQ(ReadMessageHead(text).url, DocumentHead(text).url) << tag;
    }
}
