#pragma once
// Misbehaviour on order, so that a host can be tried against a decoder that is slow, mute, broken or gone.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "ErrorCode.h"

namespace simulated_decoder {

// What goes wrong with the requests of one url.
struct UrlFaults {
    std::optional<ErrorCode> errorCode; // answered instead of carrying the request out
    std::chrono::milliseconds delay{0};
    bool silent = false; // no reply at all; comes before what would be wrong with it
    bool wrongSeq = false;
    bool garbage = false;
};

struct Faults {
    std::map<std::string, UrlFaults, std::less<>> urls;
    std::size_t chunk = 0;                    // all output in pieces of that many bytes; 0: whole
    std::uint32_t cutAfter = 0;               // cut in the middle of the n-th reply of a connection; 0: never
    std::chrono::milliseconds flapEvery{0};   // 0: never
    std::chrono::milliseconds notifyEvery{0}; // 0: never
    std::chrono::milliseconds beatEvery{0};   // 0: never
    bool deviceHead = false;                  // in front of every reply

    // The faults of one url; all off when none were asked for.
    const UrlFaults& For(std::string_view url) const;
};

// Adds one fault as the command line gives it: NAME, NAME=NUMBER, NAME@URL or NAME=NUMBER@URL. Given twice,
// the last number counts. Empty when it was understood, else what is wrong with it, in one line.
std::string AddFault(Faults& faults, std::string_view spec);

// The lines of the help text, one a fault.
std::string DescribeFaults();

} // namespace simulated_decoder
