// What the simulated decoder decides by itself: the wall and its refusals, the faults.

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "Faults.h"
#include "Wall.h"

namespace simulated_decoder {
namespace {

Split SplitIn(std::uint32_t mode)
{
    Split split{mode, {}};
    for (std::uint32_t index = 0; index < mode; ++index) {
        split.subWindows.push_back({index, 100 + index});
    }
    return split;
}

Window MakeWindow(std::uint32_t id, const Rect& rect = {0, 0, 100, 100}, std::uint32_t mode = 1)
{
    return {id, rect, SplitIn(mode)};
}

std::vector<std::uint32_t> Ids(const Wall& wall)
{
    std::vector<std::uint32_t> ids;
    for (const Window& window : wall.Windows()) {
        ids.push_back(window.id);
    }
    return ids;
}

TEST(SimulatedWall, RefusesRectanglesThatAreEmptyOrBeyondItsEdges)
{
    constexpr std::int64_t kHuge = UINT32_MAX;
    constexpr std::int64_t kFar = INT32_MIN;
    const struct {
        Rect rect;
        ErrorCode expected;
    } cases[] = {
        {{0, 0, 3840, 1080}, ErrorCode::Success},
        {{3839, 1079, 1, 1}, ErrorCode::Success},
        {{0, 0, 0, 1}, ErrorCode::EmptyRectangle},
        {{0, 0, 1, -1}, ErrorCode::EmptyRectangle},
        {{-99, 0, 100, 100}, ErrorCode::Success},
        {{-100, 0, 100, 100}, ErrorCode::OffTheWall},
        {{0, -99, 100, 100}, ErrorCode::Success},
        {{0, -100, 100, 100}, ErrorCode::OffTheWall},
        {{3839, 0, 100, 100}, ErrorCode::Success},
        {{3840, 0, 100, 100}, ErrorCode::OffTheWall},
        {{0, 1079, 100, 100}, ErrorCode::Success},
        {{0, 1080, 100, 100}, ErrorCode::OffTheWall},
        {{kFar, kFar, kHuge, kHuge}, ErrorCode::Success},
        {{kHuge, kHuge, kHuge, kHuge}, ErrorCode::OffTheWall},
        {{kFar, 0, 1, 1}, ErrorCode::OffTheWall},
        {{-1, 0, 0, 1}, ErrorCode::EmptyRectangle},
    };
    for (const auto& [rect, expected] : cases) {
        SCOPED_TRACE(testing::Message()
                     << rect.x << ' ' << rect.y << ' ' << rect.width << ' ' << rect.height);
        Wall wall(1, 2);
        EXPECT_EQ(wall.Create({MakeWindow(1, rect)}), expected);
        EXPECT_EQ(wall.Windows().size(), expected == ErrorCode::Success ? 1U : 0U);
        ASSERT_EQ(wall.Create({MakeWindow(2)}), ErrorCode::Success);
        EXPECT_EQ(wall.Move({{2, rect}}), expected);
    }
}

TEST(SimulatedWall, ShrinksToAnyGridThatLeavesAPixelOfEachWindow)
{
    Wall wall(2, 2);
    ASSERT_EQ(wall.Create({MakeWindow(1, {1900, 1000, 1000, 1000})}), ErrorCode::Success);
    EXPECT_EQ(wall.Resize(1, 1), ErrorCode::Success);
    ASSERT_EQ(wall.Resize(2, 2), ErrorCode::Success);
    ASSERT_EQ(wall.Move({{1, {1920, 1000, 1000, 1000}}}), ErrorCode::Success);
    EXPECT_EQ(wall.Resize(1, 1), ErrorCode::OffTheWall);
    EXPECT_EQ(wall.Columns(), 2);
}

TEST(SimulatedWall, ChangesAllWindowsOfARequestOrNone)
{
    Wall wall(1, 1);
    ASSERT_EQ(wall.Create({MakeWindow(1), MakeWindow(2)}), ErrorCode::Success);
    const std::uint64_t revision = wall.Revision();

    EXPECT_EQ(wall.Create({MakeWindow(3), MakeWindow(1)}), ErrorCode::WindowExists);
    EXPECT_EQ(wall.Create({MakeWindow(3), MakeWindow(3)}), ErrorCode::WindowExists);
    EXPECT_EQ(wall.Move({{1, {5, 5, 5, 5}}, {9, {5, 5, 5, 5}}}), ErrorCode::UnknownWindow);
    EXPECT_EQ(wall.Resplit({{1, SplitIn(4)}, {9, SplitIn(4)}}), ErrorCode::UnknownWindow);
    EXPECT_EQ(wall.Destroy({1, 1}), ErrorCode::UnknownWindow);
    EXPECT_EQ(wall.Raise(9), ErrorCode::UnknownWindow);

    EXPECT_EQ(Ids(wall), (std::vector<std::uint32_t>{1, 2}));
    EXPECT_EQ(wall.Windows()[0].rect.x, 0);
    EXPECT_EQ(wall.Windows()[0].split.mode, 1U);
    EXPECT_EQ(wall.Revision(), revision);
}

TEST(SimulatedWall, KeepsTheNewestOnTopAndRaisesWithoutDisorder)
{
    Wall wall(1, 1);
    ASSERT_EQ(wall.Create({MakeWindow(1), MakeWindow(2), MakeWindow(3)}), ErrorCode::Success);
    ASSERT_EQ(wall.Raise(1), ErrorCode::Success);
    EXPECT_EQ(Ids(wall), (std::vector<std::uint32_t>{2, 3, 1}));
    ASSERT_EQ(wall.Move({{2, {5, 5, 5, 5}}}), ErrorCode::Success);
    ASSERT_EQ(wall.Destroy({3}), ErrorCode::Success);
    EXPECT_EQ(Ids(wall), (std::vector<std::uint32_t>{2, 1}));
}

TEST(SimulatedFaults, UnderstandsTheirFormsAndCombinesThem)
{
    Faults faults;
    for (const char* spec :
         {"error=7@dologin", "delay=20@dologin", "silent@a", "wrong-seq@a", "garbage@b", "chunk=3",
          "cut-after=5", "notify-every=9", "beat-every=8", "device-head", "chunk=4"}) {
        EXPECT_EQ(AddFault(faults, spec), "") << spec;
    }
    const UrlFaults& login = faults.For("dologin");
    EXPECT_EQ(login.errorCode, static_cast<ErrorCode>(7));
    EXPECT_EQ(login.delay.count(), 20);
    EXPECT_FALSE(login.silent || login.wrongSeq || login.garbage);
    EXPECT_TRUE(faults.For("a").silent && faults.For("a").wrongSeq && faults.For("b").garbage);
    EXPECT_FALSE(faults.For("dowallclear").errorCode.has_value());
    EXPECT_EQ(faults.chunk, 4U);
    EXPECT_EQ(faults.cutAfter, 5U);
    EXPECT_EQ(faults.notifyEvery.count(), 9);
    EXPECT_EQ(faults.beatEvery.count(), 8);
    EXPECT_TRUE(faults.deviceHead);
    EXPECT_EQ(ListFaults(faults).size(), 10U);
    EXPECT_EQ(ListFaults(faults)[1].url + "=" + std::to_string(ListFaults(faults)[1].number), "dologin=20");
    for (const ActiveFault& fault : ListFaults(faults)) {
        const std::string place = fault.url.empty() ? "" : "@" + fault.url;
        EXPECT_EQ(RemoveFault(faults, std::string(fault.name) + place), "");
    }
    EXPECT_TRUE(ListFaults(faults).empty());
}

TEST(SimulatedFaults, SaysWhatIsWrongWithABadOne)
{
    const struct {
        const char* spec;
        const char* problem;
    } cases[] = {
        {"", "unknown fault ''"},
        {"slow=1@a", "unknown fault 'slow=1@a'"},
        {"error=1", "fault 'error=1' is not of the form error=CODE@URL"},
        {"error@a", "fault 'error@a' is not of the form error=CODE@URL"},
        {"silent@", "fault 'silent@' is not of the form silent@URL"},
        {"silent=1@a", "fault 'silent=1@a' is not of the form silent@URL"},
        {"device-head=1", "fault 'device-head=1' is not of the form device-head"},
        {"chunk=1@a", "fault 'chunk=1@a' is not of the form chunk=BYTES"},
        {"chunk=0", "fault 'chunk=0': '0' is not a number from 1 to 16777216"},
        {"delay=1x@a", "fault 'delay=1x@a': '1x' is not a number from 1 to 86400000"},
        {"cut-after=4294967296",
         "fault 'cut-after=4294967296': '4294967296' is not a number from 1 to 4294967295"},
    };
    for (const auto& [spec, problem] : cases) {
        Faults faults;
        EXPECT_EQ(AddFault(faults, spec), problem);
        EXPECT_TRUE(faults.urls.empty() && faults.chunk == 0 && faults.cutAfter == 0 && !faults.deviceHead);
    }
}

} // namespace
} // namespace simulated_decoder
