#include "WallCommandFixture.h"

namespace {

Bytes Window(unsigned int id, unsigned long subWindows) { return Bytes().U16(id).U32(subWindows); }

std::string Border(int index, int draw) { return Item(Elem("index", index) + Elem("drawborder", draw)); }

using DisplayTest = WallCommandFixture;

TEST_F(DisplayTest, BordersAreSentAsFarAsTheyWereRead)
{
    const std::string one = Window(7, 2).U16(0).U16(3).U16(4).U16(1);
    const std::string oneSent = WindowItem(7, Border(0, 3) + Border(4, 1));
    const auto checkBorders = [this](const char* what, unsigned long count, const std::string& windows,
                                     const std::string& items) {
        Check(what, "DrawBorder", Bytes().U32(count).Text(windows), Windows(items));
    };
    checkBorders("two windows", 2, one + std::string(Window(5, 0)), oneSent + WindowItem(5, ""));
    checkBorders("more windows than bytes", 0xFFFFFFFF, one, oneSent);
    checkBorders("more sub-windows than bytes", 2, Window(5, 0xC0010000).U16(1).U16(2),
                 WindowItem(5, Border(1, 2)));
    checkBorders("a sub-window cut: its bytes are the next window's", 2,
                 Window(5, 2).U16(1).U16(2).U16(3).Text("x"),
                 WindowItem(5, Border(1, 2)) + WindowItem(3, ""));
}

TEST_F(DisplayTest, ShortRecordsOfZoomAndSwitchesAreRefused)
{
    EXPECT_EQ(Run(0x50002, Option(0x50014, std::string(39, '\0'))), "failure 20000002");
    EXPECT_EQ(Run(0x50001, Option(0x60012, std::string(35, '\0'))), "failure 20000002");
    EXPECT_TRUE(node.frames.empty());
}

} // namespace
