#include "WallCommandFixture.h"

using namespace ORVA2_DECODER_TVW;

namespace {

// The wall's and the plan's GUID in front of every record.
Bytes Guids() { return Bytes().Text(std::string(16, 'W')).Text(std::string(16, 'P')); }

std::string Window(unsigned long id, unsigned int nMode)
{
    Bytes window = Bytes().U32(id).U32(1).U32(2).U32(0xFFFFFFFF).U32(4);
    window.U16(5).U16(6).U16(7).U16(8).U32(nMode).U32(9).U32(10);
    for (unsigned int i = 0; i < nMode; ++i) {
        window.U32(i).U32(100 + i);
    }
    return window;
}

std::string Windows(const std::string& items) { return Body(Elem("td_windowlist", items)); }

std::string Rect(const std::string& x, const std::string& y, const std::string& width,
                 const std::string& height)
{
    return Elem("rect", Elem("xpos", x) + Elem("ypos", y) + Elem("width", width) + Elem("height", height));
}

const std::string WINDOW_3 =
    Windows(Item(Elem("id", 3) + Rect("1", "2", "4294967295", "4") + Elem("mode", 2) +
                 Elem("td_subwindowlist", Item(Elem("index", 0) + Elem("osdid", 100)) +
                                              Item(Elem("index", 1) + Elem("osdid", 101)))));

using CanvasTest = WallCommandFixture;

TEST_F(CanvasTest, EveryOperationSendsItsBodyAndEchoesItsRecord)
{
    LogIn();
    const std::string one = Guids().U32(1).Text(Window(3, 2));
    const Case cases[] = {
        {"create", 0x50002, 0x60006, one, "docreatewindow", WINDOW_3, 0x60006},
        {"split, answered as a creation", 0x50001, 0x5000E, one, "dosplitwindow", WINDOW_3, 0x60006},
        {"delete", 0x50002, 0x60007, Guids().U32(2).U32(7).U32(0x80000000), "dodestroywindow",
         Windows(Item(Elem("id", 7)) + Item(Elem("id", 2147483648))), 0x60007},
        {"move, signed", 0x50002, 0x60008, Guids().U32(1).U32(7).U32(-10UL).U32(20).U32(30).U32(40),
         "domodifywindow", Windows(Item(Elem("id", 7) + Rect("-10", "20", "30", "40"))), 0x60008},
        {"raise", 0x50002, 0x60009, Guids().U32(0xFFFFFFFE), "dowindowtop",
         Body(Elem("td_window", Elem("id", 4294967294))), 0x60009},
        {"clear, whatever the data", 0x50001, 0x60011, "any", "dowallclear", Body(""), 0x60011},
    };
    for (const auto& c : cases) {
        Check(c);
    }
}

TEST_F(CanvasTest, ShortRecordsSendWhatWasReadOfThem)
{
    LogIn();
    const std::string two = Guids().U32(2).Text(Window(3, 2)).Text(Window(4, 9));
    const Case cases[] = {
        {"second window cut", 0x50002, 0x60006, two.substr(0, two.size() - 1), "docreatewindow", WINDOW_3,
         0x60006},
        {"more windows than bytes", 0x50002, 0x60006, Guids().U32(3).Text(Window(3, 2)), "docreatewindow",
         Windows(""), 0x60006},
        {"product beyond 32 bits", 0x50002, 0x60007, Guids().U32(0x40000001).U32(1), "dodestroywindow",
         Windows(""), 0x60007},
        {"move cut", 0x50002, 0x60008, Guids().U32(1).U32(7), "domodifywindow", Windows(""), 0x60008},
        {"no whole head", 0x50002, 0x60007, "short", "dodestroywindow", Windows(""), 0x60007},
        {"raise cut", 0x50002, 0x60009, std::string(35, 'x'), "dowindowtop",
         Body(Elem("td_window", Elem("id", 0))), 0x60009},
        {"nothing", 0x50001, 0x60011, "", "dowallclear", Body(""), 0x60011},
    };
    for (const auto& c : cases) {
        Check(c);
    }
}

TEST_F(CanvasTest, FailuresHaveTheSameAnswersEverywhere)
{
    LogIn();
    const std::pair<unsigned int, unsigned int> operations[] = {{0x50002, 0x60006}, {0x50002, 0x60007},
                                                                {0x50002, 0x60008}, {0x50002, 0x60009},
                                                                {0x50001, 0x5000E}, {0x50001, 0x60011}};
    for (const auto& [id, type] : operations) {
        CheckFailures(id, type);
    }
}

} // namespace
