#include "Base/LineInput.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Base/ExitStatus.h"

namespace standin_host {

LineInput::LineInput(const std::string& path)
    : m_descriptor(path == "-" ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC)),
      m_owned(path != "-")
{
    struct stat status {};
    const bool isOpen = m_descriptor >= 0 && ::fstat(m_descriptor, &status) == 0;
    if (!isOpen || S_ISDIR(status.st_mode)) {
        const std::string reason = isOpen ? "it is a folder" : std::generic_category().message(errno);
        Close();
        throw UsageError("cannot read the script " + path + ": " + reason);
    }
    m_nSize = S_ISREG(status.st_mode) ? static_cast<std::size_t>(status.st_size) : 0;
}

LineInput::~LineInput() { Close(); }

void LineInput::Close() const
{
    if (m_owned && m_descriptor >= 0) {
        ::close(m_descriptor);
    }
}

bool LineInput::Take(std::string& line)
{
    const std::size_t end = m_buffer.find('\n');
    if (std::min(end, m_buffer.size()) > kMaxLine) {
        throw UsageError(kLongLine);
    }
    if (end == std::string::npos && (!m_end || m_buffer.empty())) {
        return false;
    }
    line = m_buffer.substr(0, end);
    m_buffer.erase(0, end == std::string::npos ? end : end + 1);
    return true;
}

void LineInput::Fill()
{
    char buffer[4096];
    const ssize_t readCount = ::read(m_descriptor, buffer, sizeof buffer);
    if (readCount > 0) {
        m_buffer.append(buffer, static_cast<std::size_t>(readCount));
        m_read += static_cast<std::size_t>(readCount);
    } else if (readCount == 0) {
        m_end = true;
    } else if (errno != EINTR) {
        throw UsageError(std::string("cannot read the input: ") + std::generic_category().message(errno));
    }
}

std::string LineInput::PositionText() const
{
    const std::size_t taken = m_read - m_buffer.size();
    // No meaningful share for a file that grows while it is read, or was not read from its start.
    return m_nSize == 0 || m_read > m_nSize ? "" : " (" + std::to_string(100 * taken / m_nSize) + " %)";
}

} // namespace standin_host
