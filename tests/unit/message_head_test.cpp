#include <gtest/gtest.h>

#include "CountedText.h"
#include "HeavyMessages.h"
#include "Link/MessageHead.h"
#include "MarkupSTL.h"

namespace {

constexpr uint64_t KEY = 0x0FEDCBA987654321;

// What the document finds; head_fuzz does the same with short messages.
SMessageHead DocumentHead(const std::string& text)
{
    CMarkupSTL doc(text.data(), static_cast<unsigned int>(text.size()));
    SMessageHead head;
    if (doc.FindElem("td_command") && doc.IntoElem() && doc.FindElem("td_header") && doc.IntoElem()) {
        head.url = doc.FindElem("url") ? std::optional(doc.GetData()) : std::nullopt;
        head.seq = doc.FindElem("seq") ? std::optional(doc.GetData()) : std::nullopt;
    }
    return head;
}

std::string Nested(size_t nLevels, const std::string& inner)
{
    return Repeat("<a>", nLevels) + Repeat("</a>", nLevels) + inner;
}

} // namespace

TEST(MessageHead, HeavyMessagesHaveTheHeadOfTheDocumentInThreeLooksAtEachByte)
{
    constexpr size_t LEN = 150000; // nests less deep than the scan follows
    for (const HeavyMessage& message : HeavyMessages(LEN)) {
        SCOPED_TRACE(message.szWhat);
        const SMessageHead expected = DocumentHead(message.text);
        const SMessageHead head = ReadMessageHead(message.text);
        EXPECT_EQ(head.url, expected.url);
        EXPECT_EQ(head.seq, expected.seq);
        CountedText counted(message.text);
        EXPECT_EQ(CMessageHeadScan<CountedText>(counted, KEY).Run().seq, expected.seq);
        EXPECT_LE(counted.MostLooks(), 3U);
    }
}

TEST(MessageHead, LooksAtNothingAfterTheHead)
{
    const std::string head = "<td_command><td_header><url>u</url><seq>7</seq>";
    const std::string text = head + "</td_header><td_body/></td_command>";
    CountedText counted(text);
    CMessageHeadScan<CountedText>(counted, KEY).Run();
    EXPECT_EQ(counted.Seen(), head.size());
}

TEST(MessageHead, ATextEndsWhereItNestsTooDeeply)
{
    constexpr size_t MOST = 65535;
    const std::string head = "<td_command><td_header><url>u</url>";
    const std::string seq = "<seq>7</seq>";
    EXPECT_EQ(ReadMessageHead(Nested(MOST, head + seq)).seq, "7");
    EXPECT_EQ(ReadMessageHead(Nested(MOST + 1, head + seq)).url, std::nullopt);
    EXPECT_EQ(ReadMessageHead(head + Nested(MOST - 2, seq)).seq, "7");
    EXPECT_EQ(ReadMessageHead(head + Nested(MOST - 1, seq)).url, "u");
    EXPECT_EQ(ReadMessageHead(head + Nested(MOST - 1, seq)).seq, std::nullopt);
}

TEST(MessageHead, TagsThatTheDocumentCannotHoldAreNoElements)
{
    const std::string head = "<td_command><td_header>";
    for (const size_t n : {size_t{1} << 20, size_t{2} << 20, size_t{3} << 20}) {
        for (const size_t nTag : {n - 1, n}) {
            const std::string text = head + "<url" + std::string(nTag - 5, ' ') + ">u</url><seq>7</seq>";
            EXPECT_EQ(ReadMessageHead(text).url, DocumentHead(text).url) << nTag;
        }
    }
    for (const size_t nTag : {1023U, 1024U}) {
        const std::string text = head + "<url>u</url" + std::string(nTag - 6, ' ') + "><seq>7</seq>";
        EXPECT_EQ(ReadMessageHead(text).url, DocumentHead(text).url) << nTag;
    }
}
