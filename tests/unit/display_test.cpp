#include "DecodeCommDisplay.h"
#include "RecordChecks.h"
#include "WallCommandFixture.h"

using namespace ORVA2_DECODER_TVW;

namespace {

const std::string GUIDS = std::string(16, 'W') + std::string(16, 'P');

Bytes Window(unsigned int id, unsigned long nSubWindows) { return Bytes().U16(id).U32(nSubWindows); }

std::string WindowElem(int id, const std::string& subItems)
{
    return Item(Elem("id", id) + Elem("td_subwindowlist", subItems));
}
std::string Border(int nIndex, int nDraw) { return Item(Elem("index", nIndex) + Elem("drawborder", nDraw)); }
std::string Windows(const std::string& items) { return Body(Elem("td_windowlist", items)); }

std::string Switches(const std::string& nBorder, const std::string& nShowID)
{
    return Elem("enableborder", nBorder) + Elem("enableshowwinid", nShowID);
}

// The text that the host gets, with its terminating zero.
std::string ConfigText(const std::string& nBorder, const std::string& nShowID, const std::string& operation)
{
    const std::string values = Elem("errorcode", 0) + Switches(nBorder, nShowID) + Elem(operation, 1);
    return Lines(Elem("response",
                      Elem("id", "{01234567-89AB-CDEF-1020-304050607080}") + Elem("baseInfo", values))) +
           '\0';
}

using DisplayTest = WallCommandFixture;

TEST_F(DisplayTest, BordersAndZoomSendWhatWasReadAndEchoTheirRecord)
{
    LogIn();
    const std::string one = Window(0xFFFF, 2).U16(0).U16(0xFFFF).U16(0x8000).U16(1);
    const std::string oneSent = WindowElem(-1, Border(0, -1) + Border(-32768, 1));
    const auto Count = [](unsigned long n, const std::string& windows) {
        return std::string(Bytes().U32(n).Text(windows));
    };
    const auto Borders = [](const char* what, const std::string& record, const std::string& items) {
        return Case{what, 0x50001, 0x60003, record, "dodrawborder", Windows(items), 0x60003};
    };
    const Case cases[] = {
        Borders("two windows", Count(2, one + std::string(Window(5, 0))), oneSent + WindowElem(5, "")),
        Borders("more windows than bytes", Count(0xFFFFFFFF, one), oneSent),
        Borders("more sub-windows than bytes", Count(2, Window(5, 0x40000001).U16(1).U16(2)),
                WindowElem(5, Border(1, 2))),
        Borders("a sub-window cut: its bytes are the next window's",
                Count(2, Window(5, 2).U16(1).U16(2).U16(3).Text("x")),
                WindowElem(5, Border(1, 2)) + WindowElem(3, "")),
        Borders("count cut", Count(2, one + "\5" + std::string(4, '\0')), oneSent + WindowElem(5, "")),
        Borders("id cut", Count(2, one + "\5"), oneSent + WindowElem(0, "")),
        Borders("no whole count", "\1\1\1", ""),
        Borders("nothing", "", ""),
        {"zoom", 0x50002, 0x50014, Bytes().Text(GUIDS).U32(0xFFFFFFFE).U16(65535).U16(65535), "dofullscreen",
         Body(Elem("enable", 65535) +
              Elem("td_window", Elem("id", 4294967294) + Elem("td_subwindow", Elem("index", 65535)))),
         0x50014},
    };
    EXPECT_EQ(Run(0x50002, Option(0x50014, std::string(39, '\0'))), "failure 20000002");
    EXPECT_EQ(Run(0x50001, Option(0x60012, std::string(35, '\0'))), "failure 20000002");
    EXPECT_TRUE(node.frames.empty()) << "short records that are refused";
    for (const auto& c : cases) {
        Check(c);
    }
    CheckFailures(0x50001, 0x60003);
    CheckFailures(0x50002, 0x50014, std::string(40, '\0'));
    CheckFailures(0x50001, 0x60012, std::string(36, '\0'));
    CheckFailures(0x50000, 0x60013);
}

TEST_F(DisplayTest, TheHostGetsTheSwitchesAsATextOfItsOwn)
{
    LogIn();
    EXPECT_EQ(Ask(0x50001, Option(0x60012, Bytes().Text(GUIDS).U16(65535).U16(1)), "setwindowconfig",
                  Switches("7", "8")),
              ResultOf(0x60012, ConfigText("65535", "1", "setWindowConfig")))
        << "what was set, not what was read back";
    EXPECT_EQ(LastBody(), Body(Switches("65535", "1")));
    EXPECT_EQ(Ask(0x50000, Option(0x60013, "any"), "getwindowconfig", Elem("enableborder", 4294967295)),
              ResultOf(0x60013, ConfigText("4294967295", "0", "getWindowConfig")));
    EXPECT_EQ(LastBody(), NO_BODY);
}

TEST(DisplayRecords, KeepEveryByteAndReportWhatIsMissing)
{
    RoundTrips<S_Decoder_Draw_Border>(
        Bytes().U32(2).Text(Window(1, 2).U16(1).U16(2).U16(3).U16(4)).Text(Window(2, 0)));
    S_Decoder_Draw_Border record;
    Decode(record, Bytes().U32(1).Text(Window(2, 0)));
    EXPECT_FALSE(record.SetData(nullptr, 0));
    EXPECT_EQ(Encode(record), std::string(4, '\0')) << "emptied even without data";
}

} // namespace
