#include <gtest/gtest.h>
#include <string>
#include <tinyxml2.h>
#include <tuple>
#include <vector>

#include "LinkTexts.h"
#include "VTXMLParse.h"
#include "XmlCost.h"

namespace {

bool Parses(CVTXMLParse& reader, const std::string& text)
{
    const std::vector<char> exact(text.begin(), text.end()); // no zero byte behind the text
    return reader.Parse(exact.data(), exact.size());
}

} // namespace

TEST(PathReader, ReadsByPathByPositionAndBySibling)
{
    CVTXMLParse reader;
    ASSERT_TRUE(Parses(
        reader, "<?xml version=\"1.0\"?><msg><!-- c --><head><token><![CDATA[a<b]]></token></head>"
                "<body>text<item><!-- c -->t<id>1</id><!-- c --><name> a&lt;&#x4e2d; </name></item> "
                "<other><id>3</id></other><item><mixed><b/>late</mixed><id>5</id></item></body></msg>"));
    EXPECT_EQ(reader.GetValueStr("msg/head/token"), "a<b");
    EXPECT_EQ(reader.GetValueStr("head/token"), "") << "an absolute path starts with the root element";
    const auto first = reader.GetFirstItem("msg/body/item");
    EXPECT_EQ(reader.GetFirstItem(reader.GetFirstItem("msg"), "body/item"), first);
    EXPECT_EQ(reader.GetValueStr(first, "name"), " a<\u4e2d ");
    for (const char* missing : {"none", "name/none", "/name", "nam", "name/name"}) {
        EXPECT_EQ(reader.GetValueStr(first, missing), "") << missing;
        EXPECT_EQ(reader.GetValueDWORD(first, missing), 0u) << missing;
    }
    const auto id = reader.GetFirstChild(first);
    EXPECT_EQ(reader.GetValueStr(id), "1");
    EXPECT_EQ(reader.GetValueStr(reader.GetNextSiblingItem(id)), " a<\u4e2d ");
    EXPECT_EQ(reader.GetNextSiblingItem(reader.GetNextSiblingItem(id)), nullptr);
    EXPECT_EQ(reader.GetValue_i32(reader.GetNextSiblingItem(first), "id"), 3);
    EXPECT_EQ(reader.GetValue_i32(reader.GetNextSiblingItem(first, "item"), "id"), 5);
    EXPECT_EQ(reader.GetValueStr(reader.GetNextSiblingItem(first, "item"), "mixed"), "");
    EXPECT_EQ(reader.GetFirstItem(nullptr, "id"), nullptr);
    EXPECT_EQ(reader.GetFirstChild(nullptr), reader.GetNextSiblingItem(nullptr));
}

TEST(PathReader, NumbersReadLikeTheCLibraryAndKeepTheirLowBits)
{
    const std::tuple<const char*, uint32_t, int32_t> cases[] = {
        {" \n42xyz", 42, 42},
        {"-1", 0xFFFFFFFF, -1},
        {"0000000000000000000012", 12, 12},
        {"987654321/", 987654321, 987654321},
        {"1987654321", 1987654321, 1987654321},
        {"2147483648", 0x80000000, INT32_MIN},
        {"4294967301", 5, 5},
        {"0x10", 0, 0},
        {"12:30", 12, 12},
        {"none", 0, 0},
        {"", 0, 0},
        {"18446744073709551610", 0xFFFFFFFA, -1},
        {"99999999999999999999", 0xFFFFFFFF, -1}, // out of the 64 bits' range: the largest, cut
    };
    for (const auto& [text, unsignedValue, signedValue] : cases) {
        CVTXMLParse reader;
        ASSERT_TRUE(Parses(reader, std::string("<n>") + text + "</n>"));
        EXPECT_EQ(reader.GetValueDWORD("n"), unsignedValue) << text;
        EXPECT_EQ(reader.GetValue_i32("n"), signedValue) << text;
    }
}

TEST(PathReader, TellsWhatIsNoXmlFromWhatLacksAnElement)
{
    CVTXMLParse reader;
    EXPECT_FALSE(reader.IsParsed());
    for (const std::string& text :
         {std::string(), std::string("hello"), std::string("<!-- c -->"), std::string("<a><b></a>"),
          std::string("<a>x</a>tail"), std::string("<a>\0</a>", 8), std::string(64, '\xFF'),
          Repeat("<a>", 200'000)}) {
        ASSERT_TRUE(Parses(reader, "<a>1</a>"));
        EXPECT_FALSE(Parses(reader, text)) << text.substr(0, 64);
        EXPECT_FALSE(reader.IsParsed());
        EXPECT_EQ(reader.GetValue_i32("a"), 0) << "nothing is left of the message before";
    }
    EXPECT_FALSE(reader.Parse(nullptr, 10));
    EXPECT_TRUE(CVTXMLParse("<a>1</a>\0more", 13).IsParsed()) << "some senders count a terminating zero";
}

TEST(XmlCost, CountsTheNodesOfATextAndItsCopies)
{
    const uint64_t elem = sizeof(tinyxml2::XMLElement) + 2, text = sizeof(tinyxml2::XMLText) + 2,
                   attr = sizeof(tinyxml2::XMLAttribute) + 2, note = sizeof(tinyxml2::XMLComment) + 2,
                   decl = sizeof(tinyxml2::XMLDeclaration) + 2, odd = sizeof(tinyxml2::XMLUnknown) + 2;
    const auto attributes = [](size_t count) { return "<a" + Repeat(" b=''", count) + "/>"; };
    const std::tuple<std::string, uint64_t> cases[] = {
        {"<a></a>", elem},
        {"<a> \t\n\v\f\r</a>x", elem + text},
        {"<a b='\">' c=\">'\"/><b c>x", 2 * elem + 2 * attr + text},
        {"<a b='<b/>x", elem + attr},
        {"<a", elem},
        {"<!--><b/>--><!<b/>", note + odd},
        {"<?<b/>?><![CDATA[<b/>>]]><b/>", decl + text + elem},
        {std::string(1024, 'x') + "<![CDATA[" + std::string(1012, 'x') + "]]>", 2 * text},
        {std::string(1025, 'x') + "<![CDATA[" + std::string(1016, 'x'), 2 * text + 3 * (1025 + 1025)},
        {Repeat("<a>x", 1000), 1000 * (elem + text)},
        {attributes(32) + attributes(32), 2 * elem + 64 * attr},
    };
    for (const auto& [nodes, cost] : cases) {
        const std::string exact = "<!--" + std::string(33, '=') + "-->" + nodes; // with less, a quick bound
        EXPECT_EQ(xml_cost::Estimate(exact, 5000, 7), note + cost + exact.size() + 2 * 5000 + 7) << nodes;
        EXPECT_GE(xml_cost::Estimate(nodes, 5000, 7), cost + nodes.size() + 2 * 5000 + 7) << "a bound";
    }
    EXPECT_EQ(xml_cost::Estimate(attributes(33) + "<a/>", 5000, 7), xml_cost::NEVER);
    EXPECT_NE(xml_cost::Estimate("<a/>", 4, xml_cost::LIMIT - 12), xml_cost::NEVER);
    EXPECT_EQ(xml_cost::Estimate("<a/>", 4, xml_cost::LIMIT - 11), xml_cost::NEVER);
    EXPECT_NE(xml_cost::Estimate(Repeat("&", 8 << 20), 9 << 20, 0), xml_cost::NEVER); // 64 Mi looks
    EXPECT_EQ(xml_cost::Estimate(Repeat("&", (8 << 20) + 1), 9 << 20, 0), xml_cost::NEVER);
    const std::string equal = "<a" + std::string(250, ' ') + " b='" + std::string(256, '=') + "'/>";
    EXPECT_EQ(xml_cost::Estimate(equal, 0, 0), elem + attr + equal.size());
    CVTXMLParse reader;
    EXPECT_EQ(CVTXMLParse("<a/>\0<a/>", 9, 5).Spare(), xml_cost::LIMIT - xml_cost::Estimate("<a/>", 9, 5));
    EXPECT_TRUE(reader.Parse("<a/>", 4, xml_cost::LIMIT - elem - 12) && reader.Spare() == 0);
    EXPECT_FALSE(reader.Parse("<a/>", 4, xml_cost::LIMIT - elem - 11) || reader.IsParsed());
    EXPECT_EQ(reader.GetFirstItem("a"), nullptr);
    for (const uint64_t cost : {131071U, 131072U, 16U << 20U, (16U << 20U) + 1}) { // two keep memory
        EXPECT_TRUE(reader.Parse("<a/>", 4, cost - xml_cost::Estimate("<a/>", 4, 0)));
        EXPECT_EQ(reader.Clear(), cost >= 128 << 10 && cost <= 16 << 20) << cost;
        EXPECT_TRUE(!reader.IsParsed() && reader.GetFirstItem("a") == nullptr);
        EXPECT_FALSE(reader.Parse("<a", 2, 1 << 20) || reader.Clear());
    }
}
