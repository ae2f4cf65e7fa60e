#include "MediaFixture.h"
#include "MonitorTvwCommMedia.h"
#include "RecordChecks.h"

using namespace ORVA2_CLIENT_TVW;

namespace {

class MediaTest : public MediaFixture {
protected:
    // A stream as the host holds it; without the gap it is the packed form.
    static std::string Media(const std::string& guid, unsigned long nChannel, const std::string& user,
                             const std::string& pwd, const std::string& gap = "gap!")
    {
        Bytes media = Bytes().U32(nChannel).Text(guid).U32(-1UL).U32(2).U32(-3UL).U32(-4UL).U32(0x80000000);
        media.U32(-6UL).Text(gap).U32(-1UL).U32(-1UL).U32(7).U32(1).Text(Field("10.0.0.<1>", 32));
        return media.Text(Field(user, 256)).Text(Field(pwd, 256));
    }
    static std::string MediaElements(const std::string& channel, const std::string& user,
                                     const std::string& pwd)
    {
        return Elem("type", -1) + Elem("reqmode", 2) + Elem("addr", "10.0.0.&lt;1&gt;") + Elem("port", -3) +
               channel + Elem("user", user) + Elem("pwd", pwd) + Elem("begintime", -1) +
               Elem("endtime", 4294967303) + Elem("streamtype", -4) + Elem("recordmask", 2147483648) +
               Elem("source", -6);
    }
    static std::string Playing(const std::string& id, const std::string& media)
    {
        const std::string subWindow = Item(Elem("index", -9) + Elem("mediainfo", media));
        return Item(Elem("id", id) + Elem("td_subwindowlist", subWindow));
    }
    static std::string Windows(const std::string& items) { return Body(Elem("td_windowlist", items)); }

    // A window with one sub-window.
    static std::string Window(unsigned long id, unsigned long nMedia, const std::string& media)
    {
        return Bytes().U32(id).U32(1).U32(-9UL).U32(nMedia).Text(media);
    }
};

TEST_F(MediaTest, SendsEveryStreamThatCouldBeReadWithItsCredentialsEnciphered)
{
    LogInWithMediaKey();
    const std::string full(85, 'p'); // all that the key takes; a longer text leaves its element empty
    const std::string media1 = Media(GUID_BYTES, 5, USER, PASSWORD);
    const std::string media2 = Media(NO_GUID, 0, "", full), media3 = Media(NO_GUID, -1UL, full + "p", USER);
    const std::string sent1 = MediaElements(Elem("channelid", GUID_TEXT), USER, PASSWORD);
    const std::string sent2 = MediaElements(Elem("channelid", 0), "", full),
                      sent3 = MediaElements("", "", USER);
    const std::string two = Bytes().U32(2).Text(Window(-8UL, 2, media1 + media2)).Text(Window(4, 1, media3));
    const std::string bare = Bytes().U32(2).U32(3).U32(0).Text(Window(4, 0, ""));
    const std::string packed = Bytes().U32(1).Text(Window(1, 1, Media(GUID_BYTES, 5, USER, PASSWORD, "")));
    const std::string first = Playing("-8", sent1 + sent2);
    const std::string stopped = Elem("td_subwindowlist", Item(Elem("index", -9)));
    const std::string stopBody = Windows(Item(Elem("id", -8) + stopped) + Item(Elem("id", 4) + stopped));
    const Case cases[] = {
        {"two streams share one element", 0x50002, 0x60004, two, "doplaymedia",
         Windows(first + Playing("4", sent3)), 0x60004},
        {"nothing inside", 0x50002, 0x60004, bare, "doplaymedia",
         Windows(Item(Elem("id", 3) + Elem("td_subwindowlist", "")) + Playing("4", "")), 0x60004},
        {"second window cut", 0x50002, 0x60004, two.substr(0, two.size() - 1), "doplaymedia", Windows(first),
         0x60004},
        {"packed streams are misread", 0x50002, 0x60004, packed, "doplaymedia", Windows(""), 0x60004},
        {"head cut", 0x50002, 0x60004, "\1\1\1", "doplaymedia", Windows(""), 0x60004},
        {"stop", 0x50002, 0x60005, two, "dostopplaymedia", stopBody, 0x60005},
        {"stop polling, answered as a stop", 0x50002, 0x6000F, two, "dostopplaymedia", stopBody, 0x60005},
        {"stop nothing", 0x50002, 0x6000F, "", "dostopplaymedia", Windows(""), 0x60005},
    };
    for (const auto& c : cases) {
        Check(c);
    }
    for (const unsigned int nOptType : {0x60004U, 0x60005U, 0x6000FU}) {
        CheckFailures(0x50002, nOptType);
    }
    LogIn("no key");
    Check({"no key, no credentials", 0x50002, 0x60004, Bytes().U32(1).Text(Window(1, 1, media1)),
           "doplaymedia", Windows(Playing("1", MediaElements(Elem("channelid", GUID_TEXT), "", ""))),
           0x60004});
}

TEST_F(MediaTest, RecordsKeepEveryByteRefuseCountsThatDoNotFitAndHideCredentials)
{
    const std::string media = Media(GUID_BYTES, 5, USER, PASSWORD);
    RoundTrips<S_MTvw_Wall_Media>(Bytes().U32(2).Text(Window(1, 1, media)).U32(2).U32(0));
    RoundTrips<S_MTvw_Wall_Media_info>(Media(GUID_BYTES, 5, USER, PASSWORD, ""));
    EXPECT_EQ(S_MTvw_Wall_Media_info().GetLength(), 604u);

    S_MTvw_Wall_Media record;
    const std::string head = Bytes().U32(1).U32(7);
    for (const unsigned long count : {2UL, 0x08000000UL, 0x20000000UL, -1UL}) { // some wrap in 32 bits
        EXPECT_FALSE(Decode(record, Bytes().U32(count).U32(7).U32(0)));
        EXPECT_FALSE(Decode(record, Bytes().Text(head).U32(count).U32(7).U32(0)));
        EXPECT_FALSE(Decode(record, Bytes().Text(head).U32(1).U32(3).U32(count).Text(media)));
        EXPECT_TRUE(record._mediaWind.empty());
    }
    ASSERT_TRUE(Decode(record, Bytes().U32(1).Text(Window(1, 1, media))));
    fake_host::Reset();
    record.Dump();
    EXPECT_NE(fake_host::Logs().back().text.find("addr:10.0.0.<1>"), std::string::npos);
}

} // namespace
