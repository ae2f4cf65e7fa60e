#pragma once

#include <optional>
#include <string>
#include <utility>

namespace standin_host {

class CHostEvents;

// The account to log in with. The password is looked for when it is first needed: in the password file, the
// environment, or a prompt without echo on the terminal. It is never printed.
class CCredentials {
public:
    // Without a password file its path is empty.
    CCredentials(std::string strUser, std::string strPasswordFile, CHostEvents& events)
        : m_strUser(std::move(strUser)), m_strPasswordFile(std::move(strPasswordFile)), m_events(events)
    {
    }

    const std::string& User() const;
    // Throws CUsageError when there is no password or it does not fit, CExitError after a signal.
    const std::string& Password();
    // Looks for the password again when it is next needed: the decoder has refused it.
    void Forget() { m_password.reset(); }

private:
    std::string Find() const;
    std::string Prompt() const;

    const std::string m_strUser;
    const std::string m_strPasswordFile;
    CHostEvents& m_events;
    std::optional<std::string> m_password;
};

// The password of a video source: the first line of a file, or TVWALL_SOURCE_PASSWORD when no file is named,
// or empty when neither is there. Throws CUsageError when it does not fit.
std::string SourcePassword(const std::string& strFile);

} // namespace standin_host
