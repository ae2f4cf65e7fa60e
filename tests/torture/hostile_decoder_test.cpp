// A decoder that means ill, or that is none.

#include "AllocationFault.h"
#include "Base64Coder.h"
#include "WallCommandFixture.h"
#include <tuple>

namespace {

// Attributes of different names, whose values look like other things.
std::string Attributes(int n)
{
    std::string all;
    for (int i = 0; i < n; ++i) {
        all += " a" + std::to_string(i) + "='\">-->]]><b/>'";
    }
    return all;
}

class HostileDecoderTest : public WallCommandFixture {
protected:
    // The device name that the host gets for this body, or the failure.
    std::string NameFrom(const std::string& body)
    {
        const std::string answer = Ask("GetBasicCfg", "", body);
        constexpr size_t kBeforeName = 7 + 2 * (16 + 24); // "buffer ", head and record in hexadecimal
        return answer.starts_with("buffer") ? answer.substr(kBeforeName) : answer;
    }
};

TEST_F(HostileDecoderTest, TextsMadeToHurtAreFailuresOrPlainText)
{
    constexpr size_t kFar = size_t{1} << 20; // 64 references may look so far for their end
    const std::string far = Repeat("&#x", 64) + "g" + std::string(kFar - 193, '0');
    const auto named = [](const std::string& text) { return Elem("devicename", text); };
    const std::string refused = "failure 20000002";
    // What, the body, and the name in hexadecimal or the failure.
    const std::tuple<const char*, std::string, std::string> cases[] = {
        {"nested as deep as is followed", Repeat("<a>", 96) + Repeat("</a>", 96) + named("n"), Hex("n")},
        {"nested deeper", Repeat("<a>", 97) + Repeat("</a>", 97) + named("n"), refused},
        {"entities that multiply",
         "<!DOCTYPE x [<!ENTITY a \"&b;&b;\"><!ENTITY b \"xx\">]><devicename>&a;</devicename>", Hex("&a;")},
        {"a file as an entity",
         "<!DOCTYPE x [<!ENTITY f SYSTEM \"file:///etc/passwd\">]><devicename>&f;</devicename>", Hex("&f;")},
        {"known entities once", named("&amp;lt;&lt;&#65;"), Hex("&lt;<A")},
        {"references without an end", named(Repeat("&#1", 1000000)), refused},
        {"references far from their end", named(far + ";"), Hex(far + ";")},
        {"references too far from it", named(far + std::string(193, '0') + ";"), refused},
        {"references in a value with marks", "<a b='" + Repeat("&#<", 8000) + "'/>" + named("n"), refused},
        {"a zero byte by reference", named("a&#0;b"), Hex("a")},
        {"CDATA, comments", "<!-- " + named("no") + " -->" + named("<![CDATA[<&amp;]]>"), Hex("<&amp;")},
        {"many attributes", "<x " + Attributes(32) + "/><y z=''/>" + named("n"), Hex("n")},
        {"one too many, with marks in their values", "<x " + Attributes(33) + "/>", refused},
        {"too many, behind a comment that begins with its end",
         "<!--><x \"--><x " + Attributes(300000) + "/>", refused},
        {"marks outside of tags", "<!-- <x> ' --><![CDATA[<x ' ]]><devicename>n</devicename>", Hex("n")},
    };
    for (const auto& [what, body, name] : cases) {
        SCOPED_TRACE(what);
        ASSERT_EQ(NameFrom(body), name); // the next text may take minutes where this one got through
    }
}

TEST_F(HostileDecoderTest, AnAnnouncedGiantTakesNoMemoryBeforeItsBytesCome)
{
    for (const bool buffered : {false, true}) {
        SCOPED_TRACE(buffered);
        const std::string head = Bytes().Text("1111").U32(0xFFFFFFFF);
        const long taken = allocation_fault::TakenBytes();
        for (const std::string& bytes : {head, head + std::string(1000, 'x')}) {
            EXPECT_EQ(Offer(session, bytes, buffered), buffered ? bytes.size() : 0);
        }
        EXPECT_LT(allocation_fault::TakenBytes() - taken, 10000);
        EXPECT_TRUE(node.notifications.empty());
    }
}

// A length and value of the encoding that keys are written in.
std::string Der(char tag, const std::string& value)
{
    std::string length;
    for (size_t n = value.size(); n != 0; n >>= 8) {
        length.insert(0, 1, static_cast<char>(n));
    }
    return std::string(1, tag) + static_cast<char>(0x80 + length.size()) + length + value;
}

std::string PemKey(const std::string& modulus, const std::string& exponent)
{
    const std::string der = Der('\x30', Der('\x02', modulus) + Der('\x02', exponent));
    return "-----BEGIN RSA PUBLIC KEY-----\n" + CBase64Coder::Encode(der.data(), der.size()) +
           "\n-----END RSA PUBLIC KEY-----\n";
}

TEST_F(HostileDecoderTest, KeysThatAreNoneCostNothing)
{
    const std::string odd(128, '\x7F');
    const std::tuple<const char*, std::string> cases[] = {
        {"no key at all", std::string(1000000, 'A')},
        {"a head without a key", "-----BEGIN RSA PUBLIC KEY-----\n"},
        {"a text too long for a key",
         std::string(65537 - DecoderKeys().publicKey.size(), '\n') + DecoderKeys().publicKey},
        {"a modulus of nothing", PemKey(std::string(1, '\0'), "\3")},
        {"a modulus of one byte", PemKey("\7", "\3")},
        {"a modulus of 100,000 bytes", PemKey(std::string(100000, '\x7F'), "\3")},
        {"a modulus of 10,000 bytes and an exponent as long", PemKey(std::string(10000, '\x7F'), odd + odd)},
        {"an exponent that changes nothing", PemKey(odd, "\1")},
        {"an exponent that takes long", PemKey(std::string(384, '\x7F'), std::string(383, '\x7F'))},
        {"an exponent of 33 bits", PemKey(odd, std::string("\1\0\0\0\1", 5))},
        {"a modulus of one bit too many", PemKey("\1" + std::string(2048, '\xFF'), "\3")},
        {"an even exponent", PemKey(odd, "\2")},
        {"an exponent of nothing", PemKey(odd, std::string(1, '\0'))},
        {"an exponent above the modulus", PemKey(odd, odd + odd)},
    };
    for (const auto& [what, key] : cases) {
        SCOPED_TRACE(what);
        ReplyWith(ReplyText("dooption", "%SEQ%", "0", "", "<pubkey1>" + key + "</pubkey1>"));
        Run(0x101, LoginPayload("admin", "secret"));
        EXPECT_EQ(Element(LastRequest(), "url"), "dologin");
        EXPECT_EQ(Element(LastRequest(), "account") + Element(LastRequest(), "authentication"), "");
    }
}

TEST_F(HostileDecoderTest, KeysOfAnyUsableLengthAreUsed)
{
    for (const size_t len : {32U, 512U, 2048U}) {
        std::string key = PemKey('\0' + std::string(len, '\xFF'), '\0' + std::string(4, '\xFF'));
        key.insert(0, 65536 - key.size(), '\n'); // the longest text of one
        ReplyWith(ReplyText("dooption", "%SEQ%", "0", "", "<pubkey1>" + key + "</pubkey1>"));
        Run(0x101, LoginPayload("admin", "secret"));
        EXPECT_EQ(Element(LastRequest(), "account").size(), (len + 2) / 3 * 4);
    }
}

} // namespace
