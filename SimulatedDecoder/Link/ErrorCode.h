#pragma once
// The values of `errorcode` in the decoder's replies.

#include <cstdint>
#include <string>

namespace simulated_decoder {

// Every code with its number and its words, in one list: ERROR(name, number, words). The numbers of the login
// (51 to 106) are the link's own: the host tells them apart. The others only tell a reader of the reply why
// the decoder refused.
// clang-format off
#define SIMULATED_DECODER_ERRORS(ERROR) \
    ERROR(Success, 0, "success") \
    ERROR(MalformedRequest, 1, "malformed request") /* not XML, or without the header elements that every request has */ \
    ERROR(UnknownUrl, 2, "unknown url") \
    ERROR(BadValue, 3, "missing or bad value") /* an element of the body is missing, not a number or out of range */ \
    ERROR(WrongSession, 51, "wrong session") \
    ERROR(WrongToken, 52, "wrong token") /* not logged in (any more) */ \
    ERROR(WrongAccount, 103, "wrong account") \
    ERROR(TooManyHosts, 105, "too many hosts") /* logged in at the same time */ \
    ERROR(WrongPassword, 106, "wrong password") \
    ERROR(UnknownWindow, 201, "unknown window") \
    ERROR(WindowExists, 202, "window exists") \
    ERROR(OffTheWall, 203, "rectangle off the wall") \
    ERROR(EmptyRectangle, 204, "empty rectangle") \
    ERROR(WrongMode, 205, "wrong split mode") /* not from 1 to 64, not the number of sub-windows given, or an index given twice */ \
    ERROR(TooManyWindows, 206, "too many windows") \
    ERROR(UnknownSubWindow, 207, "unknown sub-window") \
    ERROR(NothingPlaying, 208, "nothing is playing") /* in the sub-window whose playback is to be controlled */ \
    ERROR(TooManyMedia, 209, "too many media") /* for one sub-window */ \
    ERROR(UnreadableCredential, 301, "unreadable credential") /* empty, or not enciphered under the second key */ \
    ERROR(RefusedCredential, 302, "refused credential") /* the source has no such account */ \
    ERROR(UnknownScreen, 401, "unknown screen") /* the position is not in the grid */ \
    ERROR(ScreenTaken, 402, "screen taken") /* another output feeds it */ \
    ERROR(ScreenNotBound, 403, "screen not bound") \
    ERROR(UnknownOutput, 405, "unknown output") \
    ERROR(OutputTaken, 406, "output taken") /* it feeds another screen */ \
    ERROR(UnknownChannel, 501, "unknown channel") \
    ERROR(UnknownGroup, 502, "unknown channel group") \
    ERROR(GroupExists, 503, "channel group exists") \
    ERROR(GroupInUse, 504, "channel group in use") /* a sub-window cycles through it */ \
    ERROR(TooManyGroups, 505, "too many channel groups")
// clang-format on

enum class ErrorCode : std::uint32_t {
#define ERROR_NUMBER(name, number, words) name = (number),
    SIMULATED_DECODER_ERRORS(ERROR_NUMBER)
#undef ERROR_NUMBER
};

// All codes in lines of "NUMBER words".
std::string ListErrorCodes();

// The code in words; never null. Numbers made up by a fault have words too.
const char* Words(ErrorCode code);

} // namespace simulated_decoder
