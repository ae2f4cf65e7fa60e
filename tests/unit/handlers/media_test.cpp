#include "WallCommandFixture.h"

namespace {

using MediaTest = WallCommandFixture;

// A window with one sub-window.
std::string Window(unsigned long id, unsigned long mediaCount, const std::string& media)
{
    return Bytes().U32(id).U32(1).U32(-9UL).U32(mediaCount).Text(media);
}

std::string MediaItem(long id, const std::string& mediaInfo)
{
    return WindowItem(id, Item(Elem("index", -9) + mediaInfo));
}

TEST_F(MediaTest, SendsEveryStreamThatCouldBeReadWithItsCredentialsEnciphered)
{
    const std::string full(85, 'p'); // all that the key takes; a longer text leaves its element empty
    const std::string media1 =
        StreamRecord(kGuidBytes, 5, kSourceUser, kSourcePassword) + StreamRecord(kNoGuid, 0, "", full);
    const std::string media2 = StreamRecord(kNoGuid, -1UL, full + "p", kSourceUser);
    const std::string two = Bytes().U32(2).Text(Window(-8UL, 2, media1)).Text(Window(4, 1, media2));
    const std::string packed =
        Bytes().U32(1).Text(Window(1, 1, StreamRecord(kGuidBytes, 5, kSourceUser, kSourcePassword, "")));
    const std::string played1 = MediaItem(
        -8, Elem("mediainfo", StreamElements(Elem("channelid", kGuidText), kSourceUser, kSourcePassword) +
                                  StreamElements(Elem("channelid", 0), "", full)));
    const std::string played2 = MediaItem(4, Elem("mediainfo", StreamElements("", "", kSourceUser)));
    Check("two windows", "PlayMedia", two, Windows(played1 + played2));
    Check("second window cut", "PlayMedia", two.substr(0, two.size() - 1), Windows(played1));
    Check("packed, which is misread", "PlayMedia", packed, Windows(""));
    Check("two windows", "StopPlayMedia", two, Windows(MediaItem(-8, "") + MediaItem(4, "")));
}

} // namespace
