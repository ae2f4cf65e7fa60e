#include "PFFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

CPFFile::~CPFFile() { Close(); }

bool CPFFile::Open(const std::string& strPath, uint32_t nMode)
{
    constexpr mode_t FOR_ALL = 0666;
    Close();
    m_fd = open(strPath.c_str(), static_cast<int>(nMode) | O_CLOEXEC, FOR_ALL);
    return m_fd >= 0;
}

void CPFFile::Close()
{
    if (m_fd >= 0) {
        close(m_fd);
        m_fd = -1;
    }
}

int64_t CPFFile::GetSize() const
{
    struct stat info {};
    return fstat(m_fd, &info) == 0 ? info.st_size : -1;
}

int64_t CPFFile::Read(void* pData, size_t nLen)
{
    size_t nRead = 0;
    while (nRead < nLen) {
        const ssize_t n = read(m_fd, static_cast<char*>(pData) + nRead, nLen - nRead);
        if (n == 0) {
            break;
        }
        if (n > 0) {
            nRead += static_cast<size_t>(n);
        } else if (errno != EINTR) {
            return -1;
        }
    }
    return static_cast<int64_t>(nRead);
}

bool CPFFile::Write(const void* pData, size_t nLen)
{
    size_t nWritten = 0;
    while (nWritten < nLen) {
        const ssize_t n = write(m_fd, static_cast<const char*>(pData) + nWritten, nLen - nWritten);
        if (n > 0) {
            nWritten += static_cast<size_t>(n);
        } else if (n == 0 || errno != EINTR) {
            return false;
        }
    }
    return true;
}
