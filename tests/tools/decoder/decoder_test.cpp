// The faults of the simulated decoder, as they are written and combined.

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "Server/Faults.h"

namespace simulated_decoder {
namespace {

TEST(SimulatedFaults, AreListedAsTheyWereGivenAndTakenAway)
{
    const std::vector<std::string> specs = {
        "error=7@a",   "delay=20@a",     "silent@a",       "wrong-seq@a",  "garbage@b",       "chunk=3",
        "cut-after=5", "notify-every=9", "notify-burst=2", "beat-every=8", "flap-channels=4", "device-head"};
    Faults faults;
    EXPECT_EQ(AddFault(faults, "chunk=4"), ""); // the last number counts
    for (const std::string& spec : specs) {
        EXPECT_EQ(AddFault(faults, spec), "") << spec;
    }
    std::set<std::string> listed;
    for (const auto& [name, url, number] : ListFaults(faults)) {
        const std::string place = url.empty() ? "" : "@" + url;
        listed.insert(std::string(name) + (number == 1 ? "" : "=" + std::to_string(number)) + place);
        EXPECT_EQ(RemoveFault(faults, std::string(name) + place), "");
    }
    EXPECT_EQ(listed, std::set<std::string>(specs.begin(), specs.end()));
    EXPECT_TRUE(ListFaults(faults).empty());
}

TEST(SimulatedFaults, SaysWhatIsWrongWithABadOne)
{
    const std::pair<std::string, std::string> cases[] = {
        {"slow=1@a", ""},
        {"error=1", " is not of the form error=CODE@URL"},
        {"error@a", " is not of the form error=CODE@URL"},
        {"silent@", " is not of the form silent@URL"},
        {"silent=1@a", " is not of the form silent@URL"},
        {"device-head=1", " is not of the form device-head"},
        {"chunk=1@a", " is not of the form chunk=BYTES"},
        {"chunk=0", ": '0' is not a number from 1 to 16777216"},
        {"delay=1x@a", ": '1x' is not a number from 1 to 86400000"},
        {"cut-after=4294967296", ": '4294967296' is not a number from 1 to 4294967295"},
    };
    for (const auto& [spec, problem] : cases) {
        Faults faults;
        EXPECT_EQ(AddFault(faults, spec),
                  (problem.empty() ? "unknown fault '" : "fault '") + spec + "'" + problem);
        EXPECT_TRUE(ListFaults(faults).empty());
    }
}

} // namespace
} // namespace simulated_decoder
