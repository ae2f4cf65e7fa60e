#pragma once
// Deliberate misbehaviour, to try a host against a decoder that is slow, mute, broken or gone.

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
    ErrorCode errorCode = ErrorCode::Success; // any other is sent instead of carrying out the request
    std::chrono::milliseconds delay{0};
    bool silent = false; // no reply at all; overrides the faults of replies
    bool wrongSeq = false;
    bool garbage = false;
};

struct Faults {
    std::map<std::string, UrlFaults, std::less<>> urls;
    std::size_t chunk = 0;                    // all output in pieces of this many bytes; 0: whole
    std::uint32_t cutAfter = 0;               // close in the middle of a connection's n-th reply; 0: never
    std::chrono::milliseconds flapEvery{0};   // 0: never
    std::chrono::milliseconds notifyEvery{0}; // 0: never
    std::uint32_t notifyBurst = 0;            // notifications of notifyEvery at once; 0: one
    std::chrono::milliseconds beatEvery{0};   // 0: never
    bool deviceHead = false;                  // in front of every reply

    // The faults of one url; all off when none were requested.
    const UrlFaults& For(std::string_view url) const;
};

// Adds one fault, written as on the command line: NAME, NAME=NUMBER, NAME@URL or NAME=NUMBER@URL. If given
// twice, the last number counts. Returns an empty string on success, else a one-line reason.
std::string AddFault(Faults& faults, std::string_view spec);
// Removes one, NAME or NAME@URL; a number is ignored. Returns an empty string on success.
std::string RemoveFault(Faults& faults, std::string_view spec);

// An active fault.
struct ActiveFault {
    std::string_view name;
    std::string url;          // empty for a fault of the connection
    std::uint32_t number = 0; // 1 if it takes none
};
std::vector<ActiveFault> ListFaults(const Faults& faults);

// An available fault.
struct FaultKind {
    std::string_view name;
    const char* form;
    const char* help;
    bool ofUrl; // affects a url, else the connection
    std::uint32_t minimum;
    std::uint32_t maximum; // largest number; 0: takes none
};
std::vector<FaultKind> FaultKinds();

// The lines of the help text, one for each fault.
std::string DescribeFaults();

} // namespace simulated_decoder
