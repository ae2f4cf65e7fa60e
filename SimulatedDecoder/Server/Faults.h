#pragma once
// Misbehaviour on order, so that a host can be tried against a decoder that is slow, mute, broken or gone.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "Link/ErrorCode.h"

namespace simulated_decoder {

// What goes wrong with the requests of one url.
struct UrlFaults {
    ErrorCode errorCode = ErrorCode::Success; // any other is answered instead of carrying the request out
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
    std::uint32_t notifyBurst = 0;            // notifications of notifyEvery at once; 0: one
    std::chrono::milliseconds beatEvery{0};   // 0: never
    bool deviceHead = false;                  // in front of every reply

    // The faults of one url; all off when none were asked for.
    const UrlFaults& For(std::string_view url) const;
};

// Adds one fault as the command line gives it: NAME, NAME=NUMBER, NAME@URL or NAME=NUMBER@URL. Given twice,
// the last number counts. Empty when it was understood, else what is wrong with it, in one line.
std::string AddFault(Faults& faults, std::string_view spec);
// Takes one away again, NAME or NAME@URL; a number is of no account. Empty when it was understood.
std::string RemoveFault(Faults& faults, std::string_view spec);

// One that was asked for.
struct ActiveFault {
    std::string_view name;
    std::string url;          // empty when it belongs to the connection
    std::uint32_t number = 0; // 1 when it takes none
};
std::vector<ActiveFault> ListFaults(const Faults& faults);

// One that can be asked for.
struct FaultKind {
    std::string_view name;
    const char* form;
    const char* help;
    bool ofUrl; // it belongs to a url, else to the connection
    std::uint32_t minimum;
    std::uint32_t maximum; // 0: it takes no number
};
std::vector<FaultKind> FaultKinds();

// The lines of the help text, one a fault.
std::string DescribeFaults();

} // namespace simulated_decoder
