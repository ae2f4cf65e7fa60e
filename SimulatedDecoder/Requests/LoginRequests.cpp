#include "Requests/RequestHandlers.h"

namespace simulated_decoder {

ErrorCode DoOption(RequestContext& context)
{
    constexpr std::uint32_t kRsa = 1; // the only encryption that hosts request
    if (ChildNumber<std::uint32_t>(context.request.Body(), "encryption") != kRsa) {
        return ErrorCode::BadValue;
    }
    const LoginDesk& desk = context.session.Desk();
    context.reply.AddHeader("session", context.session.Open());
    AddChild(context.reply.Body(), "pubkey1", desk.LoginKey().PublicPem());
    AddChild(context.reply.Body(), "pubkey2", desk.SourceKey().PublicPem());
    return ErrorCode::Success;
}

ErrorCode DoLogin(RequestContext& context)
{
    const ErrorCode code =
        context.session.LogIn(context.request.Header("account"), context.request.Header("authentication"));
    if (code == ErrorCode::Success) {
        context.reply.AddHeader("token", context.session.Token());
    }
    return code;
}

ErrorCode DoLogout(RequestContext& context)
{
    context.session.LogOut();
    return ErrorCode::Success;
}

} // namespace simulated_decoder
