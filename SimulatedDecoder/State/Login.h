#pragma once
// Who may use the decoder: the account, the keys that encipher it, and the session of each host.

#include <memory>
#include <string>
#include <string_view>

#include "Link/Crypto.h"
#include "Link/ErrorCode.h"

namespace simulated_decoder {

// Most hosts logged in at a time.
inline constexpr int kMaxLoggedIn = 32;

// Hosts encipher account and digest under the first key, passwords of video sources under the second.
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

// The session of one connection; ends with the connection. `desk` must outlive every logged-in session.
class HostSession {
public:
    explicit HostSession(LoginDesk& desk) : m_desk(desk) {}
    ~HostSession() { LogOut(); }
    HostSession(const HostSession&) = delete;
    HostSession& operator=(const HostSession&) = delete;

    // A new session id; a login under the old one ends.
    const std::string& Open();
    // On success there is a new token.
    ErrorCode LogIn(std::string_view account, std::string_view authentication);
    void LogOut();

    // Before the session is opened no text matches its id, and before login none matches its token.
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
