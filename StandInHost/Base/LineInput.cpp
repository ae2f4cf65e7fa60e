#include "Base/LineInput.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Base/ExitStatus.h"

namespace standin_host {

CLineInput::CLineInput(const std::string& strFile)
    : m_nDescriptor(strFile == "-" ? STDIN_FILENO : ::open(strFile.c_str(), O_RDONLY | O_CLOEXEC)),
      m_bOwned(strFile != "-")
{
    struct stat status {};
    const bool bOpen = m_nDescriptor >= 0 && ::fstat(m_nDescriptor, &status) == 0;
    if (!bOpen || S_ISDIR(status.st_mode)) {
        const std::string strReason = bOpen ? "it is a folder" : std::generic_category().message(errno);
        Close();
        throw CUsageError("cannot read the script " + strFile + ": " + strReason);
    }
    m_nSize = S_ISREG(status.st_mode) ? static_cast<std::size_t>(status.st_size) : 0;
}

CLineInput::~CLineInput() { Close(); }

void CLineInput::Close() const
{
    if (m_bOwned && m_nDescriptor >= 0) {
        ::close(m_nDescriptor);
    }
}

bool CLineInput::Take(std::string& strLine)
{
    const std::size_t nEnd = m_strBuffer.find('\n');
    if (nEnd == std::string::npos && (!m_bEnd || m_strBuffer.empty())) {
        return false;
    }
    strLine = m_strBuffer.substr(0, nEnd);
    m_strBuffer.erase(0, nEnd == std::string::npos ? nEnd : nEnd + 1);
    return true;
}

void CLineInput::Fill()
{
    char buffer[4096];
    const ssize_t nRead = ::read(m_nDescriptor, buffer, sizeof buffer);
    if (nRead > 0) {
        m_strBuffer.append(buffer, static_cast<std::size_t>(nRead));
        m_nRead += static_cast<std::size_t>(nRead);
    } else if (nRead == 0) {
        m_bEnd = true;
    } else if (errno != EINTR) {
        throw CUsageError(std::string("cannot read the input: ") + std::generic_category().message(errno));
    }
}

std::string CLineInput::PositionText() const
{
    const std::size_t nTaken = m_nRead - m_strBuffer.size();
    // A file that grows while it is read, or was begun in its middle, has no share worth telling.
    return m_nSize == 0 || m_nRead > m_nSize ? "" : " (" + std::to_string(100 * nTaken / m_nSize) + " %)";
}

} // namespace standin_host
