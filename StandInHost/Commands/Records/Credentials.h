#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>

namespace standin_host {

class HostEvents;

// The account to log in with. The password is looked for when it is first needed: in the password file, the
// environment, or a prompt without echo on the terminal. It is never printed.
class Credentials {
public:
    // Without a password file its path is empty; "-" is standard input.
    Credentials(std::string user, std::string passwordFile, HostEvents& events)
        : m_user(std::move(user)), m_passwordFile(std::move(passwordFile)), m_events(events)
    {
    }

    const std::string& User() const;
    // Throws UsageError when there is no password or it does not fit, ExitError after a signal.
    const std::string& Password();
    // The decoder has refused the password: looks for it again when it is next needed.
    void Forget() { m_password.reset(); }
    // From now on another account, with a password of its own.
    void Change(std::string user, std::string passwordFile);

private:
    std::string Find() const;

    std::string m_user;
    std::string m_passwordFile;
    HostEvents& m_events;
    std::optional<std::string> m_password;
};

// Passwords that a wall file leaves out and that nothing else gives: each user's is asked for once, without
// echo on the terminal.
class SourcePasswords {
public:
    explicit SourcePasswords(HostEvents& events) : m_events(events) {}

    // Throws UsageError when there is no terminal or the password does not fit, ExitError after a signal.
    const std::string& Of(const std::string& user);

private:
    HostEvents& m_events;
    std::map<std::string, std::string> m_passwords; // by user
};

// The password of a video source: the first line of a file, or TVWALL_SOURCE_PASSWORD when no file is named;
// nothing when neither is given. Throws UsageError when it does not fit.
std::optional<std::string> SourcePassword(const std::string& path);

} // namespace standin_host
