#pragma once
// What the decoder answers in the `errorcode` of a reply.

#include <cstdint>

namespace simulated_decoder {

// The numbers of the login (51 to 106) are the link's own: the host tells them apart. The others only say to
// whoever reads the reply why the decoder refused.
enum class ErrorCode : std::uint32_t {
    Success = 0,
    MalformedRequest = 1, // not XML, or without the header elements that every request has
    UnknownUrl = 2,
    BadValue = 3, // an element of the body is missing, is no number or is out of its range
    WrongSession = 51,
    WrongToken = 52, // not logged in (any more)
    WrongAccount = 103,
    TooManyHosts = 105, // logged in at the same time
    WrongPassword = 106,
    UnknownWindow = 201,
    WindowExists = 202,
    OffTheWall = 203,
    EmptyRectangle = 204,
    WrongMode = 205, // not from 1 to 64, not the number of sub-windows given, or an index given twice
    TooManyWindows = 206,
    UnknownSubWindow = 207,
    NothingPlaying = 208,       // in the sub-window whose playback is to be controlled
    TooManyMedia = 209,         // for one sub-window
    UnreadableCredential = 301, // empty, or not enciphered under the second key
    RefusedCredential = 302,    // the source has no such account
    UnknownScreen = 401,        // the position is not in the grid
    ScreenTaken = 402,          // another output feeds it
    ScreenNotBound = 403,
    UnknownOutput = 405,
    OutputTaken = 406, // it feeds another screen
    UnknownChannel = 501,
    UnknownGroup = 502,
    GroupExists = 503,
    GroupInUse = 504, // some sub-window cycles through it
    TooManyGroups = 505,
};

// The code in words; never null. A number that a fault made up has words too.
const char* Words(ErrorCode code);

} // namespace simulated_decoder
