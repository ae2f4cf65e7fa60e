// What the simulated decoder captures, read as the formats of pcap, IP and TCP say.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "CapturedConnection.h"

namespace simulated_decoder {
namespace {

std::uint32_t Number(const std::string& bytes, std::size_t offset, std::size_t size)
{
    std::uint32_t number = 0;
    for (std::size_t i = offset; i < offset + size; ++i) {
        number = number << 8U | static_cast<unsigned char>(bytes.at(i));
    }
    return number;
}

// 0xFFFF over whatever holds a right checksum.
std::uint32_t OnesComplementSum(std::string bytes)
{
    bytes.resize(bytes.size() + bytes.size() % 2);
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < bytes.size(); i += 2) {
        sum += Number(bytes, i, 2);
    }
    return static_cast<std::uint32_t>(sum % 0xFFFF == 0 ? 0xFFFF : sum % 0xFFFF);
}

TEST(Capture, HoldsEveryByteInPacketsWithRightLengthsAndSums)
{
    const struct {
        const char* host;
        std::uint32_t etherType;
        std::size_t addresses, ipHeader; // where the addresses begin, and how long the header is
    } cases[] = {
        {"192.0.2.7", 0x0800, 12, 20}, {"::ffff:192.0.2.7", 0x0800, 12, 20}, {"2001:db8::7", 0x86DD, 8, 40}};
    for (const auto& [address, etherType, addresses, ipHeader] : cases) {
        SCOPED_TRACE(address);
        const std::string path = testing::TempDir() + "capture-" + std::to_string(getpid()) + ".pcap";
        const asio::ip::tcp::endpoint host(asio::ip::make_address(address), 40000);
        const std::string fromHost(200001, 'h'); // odd, and more than three packets hold
        {
            PcapFile file(path);
            CapturedConnection connection(file, host, {host.address(), 7000});
            connection.Sent(CapturedConnection::Side::Host, fromHost);
            connection.Sent(CapturedConnection::Side::Decoder, "reply");
            connection.End(CapturedConnection::Side::Decoder);
            connection.Sent(CapturedConnection::Side::Host, "too late");
        }
        std::ifstream file(path, std::ios::binary);
        const std::string bytes(std::istreambuf_iterator<char>(file), {});
        std::filesystem::remove(path);
        std::map<std::uint32_t, std::string> sent; // by port
        for (std::size_t at = 24; at < bytes.size(); at += 16 + Number(bytes, at + 8, 4)) {
            const std::string packet = bytes.substr(at + 16, Number(bytes, at + 8, 4));
            ASSERT_EQ(Number(packet, 12, 2), etherType);
            const std::string ip = packet.substr(14, ipHeader), tcp = packet.substr(14 + ipHeader);
            if (ipHeader == 20) {
                EXPECT_EQ(OnesComplementSum(ip), 0xFFFFU);
                EXPECT_EQ(Number(ip, 2, 2), ip.size() + tcp.size());
            } else {
                EXPECT_EQ(Number(ip, 4, 2), tcp.size());
            }
            const std::string length{'\0', '\6', static_cast<char>(tcp.size() >> 8U),
                                     static_cast<char>(tcp.size())};
            EXPECT_EQ(OnesComplementSum(ip.substr(addresses) + length + tcp), 0xFFFFU);

            sent[Number(tcp, 0, 2)] += tcp.substr(Number(tcp, 12, 1) / 16 * 4);
        }
        EXPECT_TRUE(sent[40000] == fromHost);
        EXPECT_EQ(sent[7000], "reply");
    }
    EXPECT_THROW(PcapFile("/nowhere/capture.pcap"), std::runtime_error);
    EXPECT_THROW(PcapFile("/dev/full"), std::runtime_error);
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
}

} // namespace
} // namespace simulated_decoder
