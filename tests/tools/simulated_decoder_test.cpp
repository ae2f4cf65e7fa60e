// The faults of the simulated decoder, as they are written and combined.

#include <gtest/gtest.h>

#include <string>

#include "Faults.h"

namespace simulated_decoder {
namespace {

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
