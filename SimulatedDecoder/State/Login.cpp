#include "State/Login.h"

#include <utility>

namespace simulated_decoder {

LoginDesk::LoginDesk(std::string user, std::string_view password, std::shared_ptr<const DeskKeys> keys)
    : m_keys(std::move(keys)), m_user(std::move(user)), m_digest(Sha256Hex(password))
{
}

ErrorCode LoginDesk::Check(std::string_view account, std::string_view authentication) const
{
    if (m_keys->login.Decipher(account) != m_user) {
        return ErrorCode::WrongAccount;
    }
    if (m_keys->login.Decipher(authentication) != m_digest) {
        return ErrorCode::WrongPassword;
    }
    return ErrorCode::Success;
}

const std::string& HostSession::Open()
{
    LogOut();
    m_id = RandomId();
    return m_id;
}

ErrorCode HostSession::LogIn(std::string_view account, std::string_view authentication)
{
    LogOut();
    const ErrorCode code = m_desk.Check(account, authentication);
    if (code != ErrorCode::Success) {
        return code;
    }
    if (m_desk.m_loggedIn >= kMaxLoggedIn) {
        return ErrorCode::TooManyHosts;
    }
    m_token = RandomId();
    ++m_desk.m_loggedIn;
    return ErrorCode::Success;
}

void HostSession::LogOut()
{
    if (IsLoggedIn()) {
        m_token.clear();
        --m_desk.m_loggedIn;
    }
}

} // namespace simulated_decoder
