#include "Commands/Records/Credentials.h"

#include <cerrno>
#include <cstdlib>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include "Base/ExitStatus.h"
#include "Base/LineInput.h"
#include "Commands/Records/Media.h"
#include "Commands/Records/Payloads.h"
#include "Host/HostEvents.h"
#include "Tools/Common/PasswordFile.h"
#include "Tools/Common/TerminalText.h"

namespace standin_host {

namespace {

// The process's terminal with echo off; echo is restored however the prompt ends.
class SilentTerminal {
public:
    // Throws UsageError with this text when there is no terminal.
    explicit SilentTerminal(const std::string& missing) : m_descriptor(::open("/dev/tty", O_RDWR | O_CLOEXEC))
    {
        if (m_descriptor < 0 || ::tcgetattr(m_descriptor, &m_before) != 0) {
            ::close(m_descriptor);
            throw UsageError(missing);
        }
        termios silent = m_before;
        silent.c_lflag &= static_cast<tcflag_t>(~static_cast<tcflag_t>(ECHO));
        ::tcsetattr(m_descriptor, TCSAFLUSH, &silent);
    }
    ~SilentTerminal()
    {
        Print("\n");
        ::tcsetattr(m_descriptor, TCSAFLUSH, &m_before);
        ::close(m_descriptor);
    }
    SilentTerminal(const SilentTerminal&) = delete;
    SilentTerminal& operator=(const SilentTerminal&) = delete;

    int Descriptor() const { return m_descriptor; }
    void Print(std::string_view text) const
    {
        // A terminal that takes no prompt can still supply the password.
        [[maybe_unused]] const ssize_t written = ::write(m_descriptor, text.data(), text.size());
    }

private:
    int m_descriptor;
    termios m_before{};
};

// The rest of what is read with the line is dropped.
std::string ReadLine(HostEvents& events, int descriptor)
{
    LineInput input(descriptor);
    std::string line;
    while (!input.Take(line)) {
        if (input.AtEnd()) {
            throw UsageError("no password was given");
        }
        events.AwaitInput(input.Descriptor());
        input.Fill();
    }
    return line;
}

std::string Prompt(HostEvents& events, const std::string& whose, const std::string& missing)
{
    const SilentTerminal terminal(missing);
    terminal.Print("Password for " + tools::OneLine(whose) + ": ");
    return ReadLine(events, terminal.Descriptor());
}

std::string FromFile(const std::string& path)
{
    auto line = tools::ReadPasswordFile(path);
    if (!line) {
        throw UsageError("cannot read the password file " + path + ": " +
                         std::generic_category().message(errno));
    }
    return *std::move(line);
}

void CheckPassword(const std::string& password, std::size_t highest, const char* whose)
{
    if (password.size() > highest || password.find('\0') != std::string::npos) {
        throw UsageError(std::string("the ") + whose + "password is longer than " + std::to_string(highest) +
                         " bytes or holds a zero byte");
    }
}

} // namespace

const std::string& Credentials::User() const
{
    if (m_user.empty()) {
        throw UsageError("no user to log in: give --user NAME, set TVWALL_USER or name a profile");
    }
    return m_user;
}

const std::string& Credentials::Password()
{
    if (!m_password) {
        std::string password = Find();
        CheckPassword(password, kMaxCredential, "");
        m_password = std::move(password);
    }
    return *m_password;
}

std::string Credentials::Find() const
{
    if (m_passwordFile == "-") {
        return ReadLine(m_events, STDIN_FILENO);
    }
    if (!m_passwordFile.empty()) {
        return FromFile(m_passwordFile);
    }
    const char* variable = std::getenv("TVWALL_PASSWORD");
    return variable != nullptr
               ? variable
               : Prompt(m_events, User(), "no password: give --password-file or set TVWALL_PASSWORD");
}

const std::string& SourcePasswords::Of(const std::string& user)
{
    const auto [found, isNew] = m_passwords.try_emplace(user);
    if (isNew) {
        found->second = Prompt(m_events, "the sources' user " + user,
                               "no password for the sources' user " + user +
                                   ": give --source-password-file or set TVWALL_SOURCE_PASSWORD");
        CheckPassword(found->second, kMaxSourceCredential, "source's ");
    }
    return found->second;
}

void Credentials::Change(std::string user, std::string passwordFile)
{
    m_user = std::move(user);
    m_passwordFile = std::move(passwordFile);
    m_password.reset();
}

std::optional<std::string> SourcePassword(const std::string& path)
{
    std::string password;
    if (!path.empty()) {
        password = FromFile(path);
    } else if (const char* variable = std::getenv("TVWALL_SOURCE_PASSWORD")) {
        password = variable;
    } else {
        return std::nullopt;
    }
    CheckPassword(password, kMaxSourceCredential, "source's ");
    return password;
}

} // namespace standin_host
