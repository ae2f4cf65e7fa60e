// The faults of the simulated decoder, as they are written and combined, and where it writes its capture to;
// scripts/check-dissector looks at what.

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Server/Faults.h"
#include "Server/PcapFile.h"

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

TEST(Capture, APipeWhoseReaderStandsStillEndsItAndHoldsNobodyUp)
{
    const std::string path = testing::TempDir() + "pipe-" + std::to_string(getpid());
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const int reader = open(path.c_str(), O_RDONLY | O_NONBLOCK);
    AppendedFile file(path);
    file.Write("seen");
    std::string seen(4, ' ');
    EXPECT_EQ(read(reader, seen.data(), seen.size()), 4);
    EXPECT_EQ(seen, "seen");
    EXPECT_TRUE(file.IsOpen());
    file.Write(std::string(16 << 20, 'x'));
    EXPECT_FALSE(file.IsOpen());
    close(reader);
    std::filesystem::remove(path);
    EXPECT_THROW(PcapFile("/nowhere/capture.pcap"), std::runtime_error);
    EXPECT_THROW(PcapFile("/dev/full"), std::runtime_error);
}

} // namespace
} // namespace simulated_decoder
