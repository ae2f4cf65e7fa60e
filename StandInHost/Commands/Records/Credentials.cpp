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

namespace standin_host {

namespace {

// The process's terminal with echo switched off, however the prompt ends.
class CSilentTerminal {
public:
    CSilentTerminal() : m_nDescriptor(::open("/dev/tty", O_RDWR | O_CLOEXEC))
    {
        if (m_nDescriptor < 0 || ::tcgetattr(m_nDescriptor, &m_before) != 0) {
            ::close(m_nDescriptor);
            throw CUsageError("no password: give --password-file or set TVWALL_PASSWORD");
        }
        termios silent = m_before;
        silent.c_lflag &= static_cast<tcflag_t>(~static_cast<tcflag_t>(ECHO));
        ::tcsetattr(m_nDescriptor, TCSAFLUSH, &silent);
    }
    ~CSilentTerminal()
    {
        Print("\n");
        ::tcsetattr(m_nDescriptor, TCSAFLUSH, &m_before);
        ::close(m_nDescriptor);
    }
    CSilentTerminal(const CSilentTerminal&) = delete;
    CSilentTerminal& operator=(const CSilentTerminal&) = delete;

    int Descriptor() const { return m_nDescriptor; }
    void Print(std::string_view text) const
    {
        // A terminal that takes no prompt can still give the password.
        [[maybe_unused]] const ssize_t nWritten = ::write(m_nDescriptor, text.data(), text.size());
    }

private:
    int m_nDescriptor;
    termios m_before{};
};

std::string FromFile(const std::string& strFile)
{
    auto line = tools::ReadPasswordFile(strFile);
    if (!line) {
        throw CUsageError("cannot read the password file " + strFile + ": " +
                          std::generic_category().message(errno));
    }
    return *std::move(line);
}

void CheckPassword(const std::string& strPassword, std::size_t nMax, const char* szWhose)
{
    if (strPassword.size() > nMax || strPassword.find('\0') != std::string::npos) {
        throw CUsageError(std::string("the ") + szWhose + "password is longer than " + std::to_string(nMax) +
                          " bytes or holds a zero byte");
    }
}

} // namespace

const std::string& CCredentials::User() const
{
    if (m_strUser.empty()) {
        throw CUsageError("--user NAME is required to log in");
    }
    return m_strUser;
}

const std::string& CCredentials::Password()
{
    if (!m_password) {
        std::string strPassword = Find();
        CheckPassword(strPassword, kMaxCredential, "");
        m_password = std::move(strPassword);
    }
    return *m_password;
}

std::string CCredentials::Find() const
{
    if (!m_strPasswordFile.empty()) {
        return FromFile(m_strPasswordFile);
    }
    const char* szVariable = std::getenv("TVWALL_PASSWORD");
    return szVariable != nullptr ? szVariable : Prompt();
}

std::string CCredentials::Prompt() const
{
    const CSilentTerminal terminal;
    terminal.Print("Password for " + User() + ": ");
    CLineInput input(terminal.Descriptor());
    std::string strLine;
    while (!input.Take(strLine)) {
        if (input.AtEnd()) {
            throw CUsageError("no password was given");
        }
        const bool bInput = m_events.Wait(CHostEvents::Clock::time_point::max(), input.Descriptor()).bInput;
        if (m_events.Interrupted() != 0) {
            throw CExitError(EXIT_SIGNAL_BASE + m_events.Interrupted(), "interrupted");
        }
        if (bInput) {
            input.Fill();
        }
    }
    return strLine;
}

std::string SourcePassword(const std::string& strFile)
{
    const char* szVariable = std::getenv("TVWALL_SOURCE_PASSWORD");
    const std::string strVariable = szVariable == nullptr ? "" : szVariable;
    std::string strPassword = strFile.empty() ? strVariable : FromFile(strFile);
    CheckPassword(strPassword, kMaxSourceCredential, "source's ");
    return strPassword;
}

} // namespace standin_host
