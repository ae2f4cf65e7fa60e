#include "MediaFixture.h"

namespace {

using MediaTest = MediaFixture;

// A stream as the host holds it; without the gap it is the packed form.
std::string Media(const std::string& guid, unsigned long nChannel, const std::string& user,
                  const std::string& pwd, const std::string& gap = "gap!")
{
    Bytes media = Bytes().U32(nChannel).Text(guid).U32(-1UL).U32(2).U32(-3UL).U32(-4UL).U32(0x80000000);
    media.U32(-6UL).Text(gap).U32(-1UL).U32(-1UL).U32(7).U32(1).Text(Field("10.0.0.<1>", 32));
    return media.Text(Field(user, 256)).Text(Field(pwd, 256));
}

std::string Elements(const std::string& channel, const std::string& user, const std::string& pwd)
{
    return Elem("type", -1) + Elem("reqmode", 2) + Elem("addr", "10.0.0.&lt;1&gt;") + Elem("port", -3) +
           channel + Elem("user", user) + Elem("pwd", pwd) + Elem("begintime", -1) +
           Elem("endtime", 4294967303) + Elem("streamtype", -4) + Elem("recordmask", 2147483648) +
           Elem("source", -6);
}

// A window with one sub-window.
std::string Window(unsigned long id, unsigned long nMedia, const std::string& media)
{
    return Bytes().U32(id).U32(1).U32(-9UL).U32(nMedia).Text(media);
}

std::string MediaItem(long nID, const std::string& mediaInfo)
{
    return WindowItem(nID, Item(Elem("index", -9) + mediaInfo));
}

TEST_F(MediaTest, SendsEveryStreamThatCouldBeReadWithItsCredentialsEnciphered)
{
    LogInWithMediaKey();
    const std::string full(85, 'p'); // all that the key takes; a longer text leaves its element empty
    const std::string media1 =
        Media(GUID_BYTES, 5, SOURCE_USER, SOURCE_PASSWORD) + Media(NO_GUID, 0, "", full);
    const std::string media2 = Media(NO_GUID, -1UL, full + "p", SOURCE_USER);
    const std::string two = Bytes().U32(2).Text(Window(-8UL, 2, media1)).Text(Window(4, 1, media2));
    const std::string packed =
        Bytes().U32(1).Text(Window(1, 1, Media(GUID_BYTES, 5, SOURCE_USER, SOURCE_PASSWORD, "")));
    const std::string played1 =
        MediaItem(-8, Elem("mediainfo", Elements(Elem("channelid", GUID_TEXT), SOURCE_USER, SOURCE_PASSWORD) +
                                            Elements(Elem("channelid", 0), "", full)));
    const std::string played2 = MediaItem(4, Elem("mediainfo", Elements("", "", SOURCE_USER)));
    Check("two windows", "PlayMedia", two, Windows(played1 + played2));
    Check("second window cut", "PlayMedia", two.substr(0, two.size() - 1), Windows(played1));
    Check("no streams", "PlayMedia", Bytes().U32(1).Text(Window(4, 0, "")),
          Windows(MediaItem(4, Elem("mediainfo", ""))));
    Check("packed, which is misread", "PlayMedia", packed, Windows(""));
    Check("no whole count", "PlayMedia", "\1\1\1", Windows(""));
    Check("two windows", "StopPlayMedia", two, Windows(MediaItem(-8, "") + MediaItem(4, "")));
    Check("nothing", "StopChlGroupPolling", "", Windows(""));
}

} // namespace
