#pragma once
// Who may use the decoder: the account, the keys under which it is asked for, and the session of each host.

#include <memory>
#include <string>
#include <string_view>

#include "Link/Crypto.h"
#include "Link/ErrorCode.h"

namespace simulated_decoder {

// Hosts that may be logged in at the same time.
inline constexpr int kMaxLoggedIn = 32;

// Under the first key hosts send account and digest, under the second the passwords of video sources.
struct DeskKeys {
    RsaKeyPair login;
    RsaKeyPair source;
};

// The one account of the decoder and its two key pairs. Keeps the digest of the password, not the password.
class LoginDesk {
public:
    LoginDesk(std::string user, std::string_view password, std::shared_ptr<const DeskKeys> keys);

    const RsaKeyPair& LoginKey() const { return m_keys->login; }
    const RsaKeyPair& SourceKey() const { return m_keys->source; }

    // Success when both Base64 texts, deciphered with the login key, are this account's name and digest.
    ErrorCode Check(std::string_view account, std::string_view authentication) const;

private:
    friend class HostSession;

    std::shared_ptr<const DeskKeys> m_keys;
    std::string m_user;
    std::string m_digest;
    int m_loggedIn = 0;
};

// The session of one connection; it ends with the connection. `desk` must outlive every session that is
// logged in.
class HostSession {
public:
    explicit HostSession(LoginDesk& desk) : m_desk(desk) {}
    ~HostSession() { LogOut(); }
    HostSession(const HostSession&) = delete;
    HostSession& operator=(const HostSession&) = delete;

    // A new session id; a login made under the old one ends.
    const std::string& Open();
    // On success there is a new token.
    ErrorCode LogIn(std::string_view account, std::string_view authentication);
    void LogOut();

    // No text is the id of a session that was not opened, and none is the token of a host not logged in.
    bool IsSession(std::string_view id) const { return !m_id.empty() && id == m_id; }
    bool IsToken(std::string_view token) const { return IsLoggedIn() && token == m_token; }
    bool IsLoggedIn() const { return !m_token.empty(); }
    const std::string& Token() const { return m_token; }
    const LoginDesk& Desk() const { return m_desk; }

private:
    LoginDesk& m_desk;
    std::string m_id;
    std::string m_token;
};

} // namespace simulated_decoder
