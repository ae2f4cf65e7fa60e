#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "Server/AppendedFile.h"

namespace simulated_decoder {

// Appends the low `size` bytes of a number, at most 8, most significant first: the byte order of packets and
// of our capture files.
void AppendNumber(std::string& bytes, std::uint64_t number, std::size_t size);

// A capture file in the classic pcap format, for Ethernet packets. A packet is in the file when Write
// returns, so that the file stays readable if the decoder is killed.
class PcapFile {
public:
    // Truncates the file; throws std::runtime_error on failure. With an empty path nothing is captured.
    explicit PcapFile(const std::string& path);

    // False without a path, and once the file cannot be written any more.
    bool IsOpen() const { return m_file.IsOpen(); }

    // Adds a packet (the Ethernet header and what follows it) with the present time.
    void Write(std::string_view packet);

private:
    AppendedFile m_file;
};

} // namespace simulated_decoder
