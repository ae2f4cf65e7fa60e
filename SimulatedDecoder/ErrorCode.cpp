#include "ErrorCode.h"

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
    }
    return "error made up by a fault";
}

} // namespace simulated_decoder
