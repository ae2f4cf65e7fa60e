#include "Link/ErrorCode.h"

namespace simulated_decoder {

const char* Words(ErrorCode code)
{
    switch (code) {
    case ErrorCode::Success:
        return "success";
    case ErrorCode::MalformedRequest:
        return "malformed request";
    case ErrorCode::UnknownUrl:
        return "unknown url";
    case ErrorCode::BadValue:
        return "missing or bad value";
    case ErrorCode::WrongSession:
        return "wrong session";
    case ErrorCode::WrongToken:
        return "wrong token";
    case ErrorCode::WrongAccount:
        return "wrong account";
    case ErrorCode::TooManyHosts:
        return "too many hosts";
    case ErrorCode::WrongPassword:
        return "wrong password";
    case ErrorCode::UnknownWindow:
        return "unknown window";
    case ErrorCode::WindowExists:
        return "window exists";
    case ErrorCode::OffTheWall:
        return "rectangle off the wall";
    case ErrorCode::EmptyRectangle:
        return "empty rectangle";
    case ErrorCode::WrongMode:
        return "wrong split mode";
    case ErrorCode::TooManyWindows:
        return "too many windows";
    case ErrorCode::UnknownSubWindow:
        return "unknown sub-window";
    case ErrorCode::NothingPlaying:
        return "nothing is playing";
    case ErrorCode::TooManyMedia:
        return "too many media";
    case ErrorCode::UnreadableCredential:
        return "unreadable credential";
    case ErrorCode::RefusedCredential:
        return "refused credential";
    case ErrorCode::UnknownScreen:
        return "unknown screen";
    case ErrorCode::ScreenTaken:
        return "screen taken";
    case ErrorCode::ScreenNotBound:
        return "screen not bound";
    case ErrorCode::UnknownOutput:
        return "unknown output";
    case ErrorCode::OutputTaken:
        return "output taken";
    case ErrorCode::UnknownChannel:
        return "unknown channel";
    case ErrorCode::UnknownGroup:
        return "unknown channel group";
    case ErrorCode::GroupExists:
        return "channel group exists";
    case ErrorCode::GroupInUse:
        return "channel group in use";
    case ErrorCode::TooManyGroups:
        return "too many channel groups";
    }
    return "error made up by a fault";
}

} // namespace simulated_decoder
