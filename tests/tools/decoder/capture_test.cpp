// Where the simulated decoder writes its capture to; scripts/check-dissector looks at what.

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Server/PcapFile.h"

namespace simulated_decoder {
namespace {

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
