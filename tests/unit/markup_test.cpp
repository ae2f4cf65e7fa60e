#include "ElemScope.h"
#include "LinkTexts.h"
#include "MarkupSTL.h"
#include <tuple>

#include <gtest/gtest.h>

namespace {

// The elements as navigation finds them: "a[b=text c[d]]".
std::string Outline(CMarkupSTL& doc)
{
    std::string text;
    while (doc.FindElem()) {
        text += (text.empty() ? "" : " ") + doc.GetTagName();
        if (!doc.GetData().empty()) {
            text += "=" + doc.GetData();
        }
        doc.IntoElem();
        const std::string children = Outline(doc);
        doc.OutOfElem();
        text += children.empty() ? "" : "[" + children + "]";
    }
    return text;
}

// A document whose main position is the element at the end of a path of names. It held another one before, of
// which nothing may be left.
CMarkupSTL At(const std::string& text, const std::vector<const char*>& path)
{
    CMarkupSTL doc("<a><b><c>1</c><d", 16);
    EXPECT_TRUE(doc.FindElem() && doc.IntoElem() && doc.FindElem());
    doc.SetDoc(text.data(), static_cast<unsigned int>(text.size()));
    for (const char* name : path) {
        doc.IntoElem();
        EXPECT_TRUE(doc.FindElem(name)) << name << " in " << text;
    }
    return doc;
}

std::string DataOf(const std::string& content) { return At("<x>" + content + "</x>", {"x"}).GetData(); }

constexpr size_t kMany = 100'000;

TEST(Markup, WritesAnElementInItsForm)
{
    using M = CMarkupSTL;
    const std::tuple<const char*, int, const char*> cases[] = {
        {nullptr, 0, "<x/>\r\n"},
        {"", M::MNF_WITHCDATA, "<x/>\r\n"},
        {"", M::MNF_WITHXHTMLSPACE, "<x />\r\n"},
        {nullptr, M::MNF_WITHNOEND, "<x>\r\n"},
        {nullptr, M::MNF_WITHNOLINES, "<x/>"},
        {"1", M::MNF_WITHNOLINES, "<x>1</x>"},
        {"&lt;&#1;", 0, "<x>&amp;lt;&amp;#1;</x>\r\n"},
        {"a<b>&'\"\xE2\x82\xAC", 0, "<x>a&lt;b&gt;&amp;'\"\xE2\x82\xAC</x>\r\n"},
        {"'", M::MNF_ESCAPEQUOTES, "<x>&apos;</x>\r\n"}, // what needs a reference, each alone
        {"\"", M::MNF_ESCAPEQUOTES, "<x>&quot;</x>\r\n"},
        {"<", 0, "<x>&lt;</x>\r\n"},
        {">", 0, "<x>&gt;</x>\r\n"},
        {"&amp;&#x20;&_a-1;&:.;& &1;&a", M::MNF_WITHREFS,
         "<x>&amp;&#x20;&_a-1;&:.;&amp; &amp;1;&amp;a</x>\r\n"},
        {"&A0;&Z9;&a.;&z;&@;&[;&`;&{;&a/;&a\x80\xFF;", M::MNF_WITHREFS,
         "<x>&A0;&Z9;&a.;&z;&amp;@;&amp;[;&amp;`;&amp;{;&amp;a/;&a\x80\xFF;</x>\r\n"},
        {"<&]]>]]>", M::MNF_WITHCDATA, "<x><![CDATA[<&]]]]><![CDATA[>]]]]><![CDATA[>]]></x>\r\n"},
    };
    for (const auto& [data, flags, text] : cases) {
        CMarkupSTL doc;
        EXPECT_TRUE(doc.AddElem("x", data, flags));
        EXPECT_EQ(doc.GetDoc(), text);
        const bool keepsReferences = (flags & M::MNF_WITHREFS) != 0;
        EXPECT_TRUE(keepsReferences || doc.GetData() == (data == nullptr ? "" : data)) << text;
    }
}

TEST(Markup, WritesNumbersAsDecimalText)
{
    CMarkupSTL doc;
    EXPECT_TRUE(doc.AddElem("n", -1) && doc.AddElem("n", 4294967295U));
    for (const auto n : {9223372036854775807ULL, 18446744073709551615ULL, 9223372036854775808ULL}) {
        EXPECT_TRUE(doc.AddElem("n", n)); // as "%lld" writes it
    }
    constexpr int kNoLines = CMarkupSTL::MNF_WITHNOLINES;
    EXPECT_TRUE(doc.AddElem("n", 0, CMarkupSTL::MNF_WITHCDATA));
    EXPECT_TRUE(doc.AddElem("n", 1U, kNoLines) && doc.AddElem("n", 2ULL, kNoLines));
    EXPECT_EQ(doc.GetDoc(), "<n>-1</n>\r\n<n>4294967295</n>\r\n<n>9223372036854775807</n>\r\n<n>-1</n>\r\n"
                            "<n>-9223372036854775808</n>\r\n<n><![CDATA[0]]></n>\r\n<n>1</n><n>2</n>");
}

TEST(Markup, AddsWhereTheCursorStands)
{
    const std::tuple<const char*, std::vector<const char*>, bool, int, const char*> cases[] = {
        {"<a>\r\n<b/>\r\n<c/>\r\n</a>", {"a", "b"}, false, 0, "<a>\r\n<b/>\r\n<x/>\r\n<c/>\r\n</a>"},
        {"<a><b/><c><d/><e/><f/></c></a>", {"a", "b"}, false, 0, "<a><b/><x/>\r\n<c><d/><e/><f/></c></a>"},
        {"<a><b/><c><d><e/></d></c></a>", {"a", "b"}, false, 0, "<a><b/><x/>\r\n<c><d><e/></d></c></a>"},
        {"<a><b/> text</a>", {"a", "b"}, false, 0, "<a><b/><x/>\r\n text</a>"},
        {"<a><b/> </a>", {"a", "b"}, false, 0, "<a><b/> <x/>\r\n</a>"},
        {"<a><b/> <!-- c --></a>", {"a", "b"}, false, 0, "<a><b/> <x/>\r\n<!-- c --></a>"},
        {"<a><b/></a>", {"a", "b"}, false, CMarkupSTL::MNF_WITHNOLINES, "<a><b/><x/></a>"},
        {"<a><b/><c/></a>", {"a"}, true, 0, "<a><b/><c/><x/>\r\n</a>"},
        {"<a></a>", {"a"}, true, 0, "<a>\r\n<x/>\r\n</a>"},
        {"<a>1</a>", {"a"}, true, 0, "<a>1<x/>\r\n</a>"},
        {"<a b='/'/>\r\n", {"a"}, true, 0, "<a b='/'>\r\n<x/>\r\n</a>\r\n"},
        {"<a />", {"a"}, true, 0, "<a >\r\n<x/>\r\n</a>"},
        {"<a/>", {"a"}, true, CMarkupSTL::MNF_WITHNOLINES, "<a><x/></a>"},
        {"<a></a>", {"a"}, true, CMarkupSTL::MNF_WITHNOLINES, "<a><x/></a>"},
        {"<a><b></a>", {"a", "b"}, true, 0, "<a><b>\r\n<x/>\r\n</a>"},
        {"<a><b>1</a>", {"a", "b"}, true, 0, "<a><b>1<x/>\r\n</a>"},
        {"<a><b><c>1</a>", {"a", "b"}, true, 0, "<a><b><c>1<x/>\r\n</a>"},
        {"<a><b>1", {"a", "b"}, true, 0, "<a><b>1<x/>\r\n"},
        {"<a><b><c>1</a>2", {"a", "b"}, false, 0, "<a><b><c>1<x/>\r\n</a>2"},
        {"<a/>\r\n", {}, false, 0, "<a/>\r\n<x/>\r\n"},
    };
    for (const auto& [text, path, into, flags, result] : cases) {
        CMarkupSTL doc;
        doc = At(text, path);
        EXPECT_TRUE(!into || doc.IntoElem());
        EXPECT_TRUE(doc.AddElem("x", nullptr, flags));
        EXPECT_EQ(doc.GetDoc(), result);
        EXPECT_EQ(doc.GetTagName(), "x");
        doc.ResetPos(); // the index has moved with the text
        CMarkupSTL again = At(result, {});
        const std::string outline = Outline(doc);
        EXPECT_TRUE(!again.IsWellFormed() || outline == Outline(again)) << result << outline;
        // What comes next goes to the end, in the text and in the index.
        for (CMarkupSTL* each : {&doc, &again}) {
            each->ResetPos();
            EXPECT_TRUE(each->FindElem() && each->IntoElem() && each->AddElem("y"));
            each->ResetPos();
        }
        EXPECT_TRUE(!again.IsWellFormed() || doc.GetDoc() + Outline(doc) == again.GetDoc() + Outline(again))
            << doc.GetDoc();
    }
}

TEST(Markup, RefusedOperationsLeaveDocumentAndCursor)
{
    CMarkupSTL doc;
    EXPECT_FALSE(doc.IntoElem());
    EXPECT_FALSE(doc.OutOfElem());
    EXPECT_FALSE(doc.FindElem());
    EXPECT_EQ(doc.GetDoc() + doc.GetData() + doc.GetTagName(), "");

    doc.AddElem("a");
    doc.ResetPos();
    EXPECT_FALSE(doc.FindElem("A"));
    EXPECT_TRUE(doc.FindElem("a"));
    const std::string endTagTooLong(1021, 'n');
    EXPECT_FALSE(doc.AddElem(nullptr) || doc.AddElem("", "1"));
    EXPECT_FALSE(doc.AddElem("b", "1", CMarkupSTL::MNF_WITHNOEND));
    EXPECT_FALSE(doc.AddElem(endTagTooLong.c_str(), "1"));
    EXPECT_FALSE(doc.AddElem(std::string(1 << 20, 'n').c_str()));
    EXPECT_TRUE(doc.IntoElem());
    CElemScope(doc, "");
    EXPECT_TRUE(doc.OutOfElem());
    EXPECT_FALSE(doc.FindElem("a"));
    EXPECT_EQ(doc.GetDoc(), "<a/>\r\n");
    EXPECT_EQ(doc.GetTagName(), "a");

    EXPECT_TRUE(doc.AddElem(endTagTooLong.c_str()));
    EXPECT_TRUE(doc.IntoElem());
    EXPECT_FALSE(doc.AddElem("child"));         // would need an end tag
    EXPECT_FALSE(doc.SetDoc("x", 0x80000000U)); // nothing is read
    EXPECT_EQ(doc.GetDoc(), "<a/>\r\n<" + endTagTooLong + "/>\r\n");
    EXPECT_FALSE(doc.SetDoc(nullptr, 5));
    EXPECT_TRUE(doc.AddElem("x", nullptr, CMarkupSTL::MNF_WITHNOEND) && doc.IntoElem() && doc.AddElem("y"));
    EXPECT_EQ(doc.GetDoc(), "<x>\r\n<y/>\r\n\r\n");
}

TEST(Markup, ReportsWhatIsWrongAndKeepsWhatItRecognises)
{
    const std::tuple<const char*, std::string, const char*> cases[] = {
        {"<?xml version='1.0'?><!DOCTYPE a '>' \">\" [<!ENTITY b '>'>]><!-- <c> --><a "
         "b='<>'><![CDATA[<d>]]></a>",
         "", "a=<d>"},
        {"<a  b\t=\t\"/>\"' c ><d/></a >", "", "a[d]"},
        {"<!DOCTYPE a [<!ELEMENT a><b>]><?c <d> > ?><a\\e>1</a>", "", "a=1"},
        {"<a b' c=d\"><e/></a>", "", "a[e]"},
        {"", "Empty document", ""},
        {" text", "No root element", ""},
        {"<a/><b/>", "Root element has sibling", "a b"},
        {"<a><b></a>", "End tag 'a' at offset 6 does not match start tag 'b' at offset 3", "a[b]"},
        {"<a><b><c><d></a>",
         "End tag 'a' at offset 12 does not match start tag 'd' at offset 9, Element 'c' at offset 6 not "
         "ended, Element 'b' at offset 3 not ended",
         "a[b[c[d]]]"},
        {"<a><b>1</b>", "Element 'a' at offset 0 not ended", "a[b=1]"},
        {"<a></b></a>", "No start tag for end tag 'b' at offset 3", "a"},
        {"<r><a></b></a></a></r>",
         "No start tag for end tag 'b' at offset 6, No start tag for end tag 'a' at offset 14", "r[a]"},
        {"</a>", "No start tag for end tag 'a' at offset 0, No root element", ""},
        {"<a/><!DOCTYPE [", "Doctype at offset 4 unterminated", "a"},
        {"<a/><b c='>", "Element tag at offset 4 unterminated", "a"},
        {"<a><a><c></b></a><d><e></d></a>",
         "No start tag for end tag 'b' at offset 9, End tag 'a' at offset 13 does not match start tag 'c' at "
         "offset 6, End tag 'd' at offset 23 does not match start tag 'e' at offset 20",
         "a[a[c] d[e]]"},
        {"<a/><", "Element tag at offset 4 unterminated", "a"},
        {"<a><b//></a>", "Incorrect Element tag at offset 3", "a"},
        {"<a></a <b/>", "Element end tag at offset 3 unterminated, Element 'a' at offset 0 not ended",
         "a[b]"},
        {"<a/><![CDATA[ ]]", "CDATA Section at offset 4 unterminated", "a"},
        {"<a/><?b", "Processing instruction at offset 4 unterminated", "a"},
        {"<a/><!--->", "Comment at offset 4 unterminated", "a"},
        {"<a>1 < 2</a>", "Incorrect tag name character at offset 5", "a=1  2"},
        {"<a></></a>", "Incorrect tag name character at offset 3", "a=>"},
        {"<a/><!DOC>", "Incorrect ! tag at offset 4", "a"},
        {"<a/><!-b>", "Incorrect comment tag at offset 4", "a"},
    };
    CMarkupSTL doc;
    for (const auto& [text, error, outline] : cases) {
        EXPECT_EQ(doc.SetDoc(text), error.empty()) << text;
        EXPECT_EQ(doc.GetError(), error) << text;
        EXPECT_EQ(Outline(doc), outline) << text;
    }
}

TEST(Markup, FindsTheNextSiblingOfAName)
{
    // Each seq begins where bit 3 of the offset is set, which as a flag would mean any case.
    CMarkupSTL doc = At("<h><seqno>12345678</seqno><seq>2</seq><seq>3</seq></h>", {"h"});
    EXPECT_TRUE(doc.IntoElem() && doc.FindElem("seq"));
    EXPECT_EQ(doc.GetData(), "2");
    EXPECT_TRUE(doc.FindElem("seq[1]"));
    EXPECT_EQ(doc.GetData(), "3");
    EXPECT_FALSE(doc.FindElem(""));
    EXPECT_EQ(doc.GetData(), "3");
    for (const char* name : {"seq", "seq/x", "seq 1", "seq=", "seq]"}) {
        doc.ResetPos();
        EXPECT_TRUE(doc.FindElem(nullptr) && doc.IntoElem() && doc.FindElem(name)) << name;
        EXPECT_EQ(doc.GetData(), "2");
    }
    for (const char* name : {"Seq", "se", "seqn", "seq-", "seq~", "x"}) {
        doc.ResetPos();
        EXPECT_TRUE(doc.FindElem() && doc.IntoElem());
        EXPECT_FALSE(doc.FindElem(name)) << name;
    }
}

TEST(Markup, ReadsTheDataOfAnElement)
{
    EXPECT_EQ(DataOf("x&amp;y"), "x&y");
    EXPECT_EQ(DataOf("<y>1</y>"), "");
    EXPECT_EQ(DataOf(" a<!-- b -->&lt;<![CDATA[&lt;]]><?c?> d<![CDATA[]]>"), " a<&lt; d");
    EXPECT_EQ(DataOf(" <![CDATA[x]]>\n<!--c--> "), "x"); // whitespace is a node of its own kind
    EXPECT_EQ(DataOf(" \n"), " \n");
    EXPECT_EQ(At("<x><y>1</x>", {"x", "y"}).GetData(), ""); // no end tag, no data
    CMarkupSTL inside = At("<x>1</x>", {"x"});
    EXPECT_TRUE(inside.IntoElem() && inside.GetData().empty()); // at no element yet
}

TEST(Markup, UnescapesReferences)
{
    const std::pair<const char*, std::string> cases[] = {
        {"&lt;&amp;&gt;&apos;&quot;", "<&>'\""},
        {"&#65;&#x7f;&#x80;&#x7FF;&#x800;", "A\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80"},
        {"&#x20AC;&#xFFFD;", "\xE2\x82\xAC\xEF\xBF\xBD"},
        {"&#x10041;", "\xE0\x81\x81"}, // only the low 16 bits, in three bytes
        {"&#0000065;&#00000065;&#x0000041;&#x00000041;", "A&#00000065;A&#x00000041;"},
        {"&#0;", std::string("\0&#0;", 5)},
        {"&nbsp;&lt &LT;&;&&#;&#x;&#X41;&#-1;&#4a;&#x4g;&amp",
         "&nbsp;&lt &LT;&;&&#;&#x;&#X41;&#-1;&#4a;&#x4g;&amp"},
    };
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(CMarkupSTL::UnescapeText(text), expected);
    }
    EXPECT_EQ(CMarkupSTL::UnescapeText("&#65;", 4) + CMarkupSTL::UnescapeText("a", 0), "&#65");
    EXPECT_EQ(CMarkupSTL::UnescapeText(nullptr) + CMarkupSTL::EscapeText(nullptr, 0), "");
    EXPECT_EQ(CMarkupSTL::EscapeText("<'&lt;", CMarkupSTL::MNF_WITHREFS), "&lt;'&lt;");
}

// Each of these takes minutes or overflows the stack when the work is not linear.
TEST(Markup, ParsesHostileTextsInLinearTime)
{
    const std::string longName(1'000'000, 'n');
    const std::string texts[] = {Repeat("<a>", kMany),
                                 Repeat("<a>", kMany) + Repeat("</b>", kMany),
                                 Repeat("<a>", kMany) + Repeat("</b></a>", kMany),
                                 Repeat("<a><b>", kMany) + Repeat("</a>", kMany),
                                 Repeat("</a>", kMany),
                                 Repeat("</a", kMany),
                                 Repeat("<", 10 * kMany),
                                 Repeat("<!", kMany) + Repeat("<!-", kMany),
                                 Repeat("<a b='<a b=\"", kMany),
                                 Repeat("<?<![CDATA[<!--", kMany),
                                 Repeat("<!DOCTYPE [\"'", kMany),
                                 "<" + longName + ">" + Repeat("<a>", kMany) + "</" +
                                     longName.substr(0, 1000) + ">" + Repeat("</b>", kMany)};

    CMarkupSTL doc;
    size_t longest = 0;
    for (const std::string& text : texts) {
        EXPECT_FALSE(doc.SetDoc(text.c_str())) << text.substr(0, 20);
        EXPECT_NE(doc.GetError(), "");
        longest = std::max(longest, doc.GetError().size());
        while (doc.FindElem() && doc.IntoElem()) {
        }
        EXPECT_TRUE(doc.AddElem("x", "1"));
        EXPECT_EQ(doc.GetData(), "1");
    }
    EXPECT_NEAR(static_cast<double>(longest), 1 << 20, 200); // what passes it is the last
    EXPECT_TRUE(doc.SetDoc(("<a" + Repeat(" b='1'", kMany) + ">" + Repeat("&", kMany) + "</a>").c_str()));
    EXPECT_TRUE(doc.FindElem());
    EXPECT_EQ(doc.GetData().size(), kMany);
    // Many siblings, after a long node of any other kind, with one added in front.
    const std::string filling(kMany, ' ');
    const std::string nodes = "<!--" + filling + "--><?" + filling + "?><a>" + filling + "</a>";
    const std::string sibling = "<b c='" + std::string(64, ' ') + "'/>"; // longer than the index expects
    doc.SetDoc((nodes + Repeat(sibling, kMany) + "<c/>").c_str());
    EXPECT_TRUE(doc.FindElem("a") && doc.AddElem("b"));
    EXPECT_TRUE(doc.FindElem("c") && doc.AddElem("d"));
    doc.ResetPos();
    EXPECT_TRUE(doc.AddElem("e") && doc.GetDoc().ends_with(sibling + "<c/><d/>\r\n<e/>\r\n"));
}

TEST(Markup, AddsInsideDeepNestingAndItsCopy)
{
    CMarkupSTL doc;
    EXPECT_TRUE(doc.SetDoc((Repeat("<a>", kMany) + "<b/>" + Repeat("</a>", kMany)).c_str()));
    while (doc.FindElem("a") && doc.IntoElem()) {
    }
    EXPECT_TRUE(doc.FindElem("b") && doc.IntoElem() && doc.AddElem("c"));
    EXPECT_NE(doc.GetDoc().find("<a><b>\r\n<c/>\r\n</b></a>"), std::string::npos);
    CMarkupSTL copy;
    copy = doc;
    EXPECT_EQ(copy.GetTagName(), "c");
    EXPECT_EQ(copy.GetMemory(), copy.GetDoc().capacity() + 32 * 2 * 65536);
    copy = At("<c/><d/>", {"d"});
    EXPECT_EQ(copy.GetError(), "Root element has sibling");
    copy = doc;
    EXPECT_EQ(copy.GetError(), "");
    copy.ResetPos();
    EXPECT_TRUE(copy.FindElem("a") && copy.IntoElem() && copy.AddElem("d"));
    EXPECT_TRUE(copy.GetDoc().ends_with("</a><d/>\r\n</a>"));
    EXPECT_TRUE(copy.OutOfElem());
    EXPECT_EQ(copy.GetTagName(), "a");
    EXPECT_TRUE(doc.GetDoc().ends_with("</a></a>"));
}

TEST(Markup, DoesNotIndexTagsThatItsLengthFieldsCannotHold)
{
    const auto startTag = [](int length) {
        return "<a " + std::string(static_cast<size_t>(length) - 4, ' ') + ">";
    };
    CMarkupSTL doc;
    for (const int length : {(1 << 20) - 1, 1 << 21, 3145727}) {
        EXPECT_TRUE(doc.SetDoc((startTag(length) + "1</a>").c_str())) << length;
        EXPECT_EQ(Outline(doc), "a=1") << length;
    }
    for (const int length : {1 << 20, (1 << 21) - 1, 3145728, 1 << 22}) {
        EXPECT_FALSE(doc.SetDoc(("<r>" + startTag(length) + "<b>1</b></r>").c_str())) << length;
        EXPECT_EQ(doc.GetError(), "Incorrect Element tag at offset 3");
        EXPECT_EQ(Outline(doc), "r[b=1]") << length;
    }
    EXPECT_TRUE(doc.SetDoc(("<a>1</a" + std::string(1019, ' ') + ">").c_str()));
    EXPECT_EQ(Outline(doc), "a=1");
    doc.ResetPos();
    EXPECT_TRUE(doc.FindElem() && doc.IntoElem() && doc.AddElem("b"));
    EXPECT_EQ(doc.GetDoc().substr(0, 14), "<a>1<b/>\r\n</a ");
    EXPECT_FALSE(doc.SetDoc(("<a>1</a" + std::string(1020, ' ') + ">").c_str()));
    EXPECT_EQ(doc.GetError(), "Incorrect Element end tag at offset 4, Element 'a' at offset 0 not ended");
}

} // namespace
