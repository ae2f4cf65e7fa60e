#include "Base/Files.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

#include "Base/ExitStatus.h"

namespace standin_host {

namespace {

class CDescriptor {
public:
    explicit CDescriptor(const std::string& strFile)
        : m_nDescriptor(::open(strFile.c_str(), O_RDONLY | O_CLOEXEC))
    {
    }
    ~CDescriptor()
    {
        if (m_nDescriptor >= 0) {
            ::close(m_nDescriptor);
        }
    }
    CDescriptor(const CDescriptor&) = delete;
    CDescriptor& operator=(const CDescriptor&) = delete;

    int Get() const { return m_nDescriptor; }

private:
    int m_nDescriptor;
};

// Reads until the end of the file or until there is enough. A negative result leaves the reason in errno.
template <class TEnough>
ssize_t ReadUntil(int nDescriptor, std::string& strBytes, TEnough bEnough)
{
    char buffer[4096];
    ssize_t nRead = 1;
    while (nRead > 0 && !bEnough(strBytes)) {
        nRead = ::read(nDescriptor, buffer, sizeof buffer);
        if (nRead > 0) {
            strBytes.append(buffer, static_cast<std::size_t>(nRead));
        } else if (nRead < 0 && errno == EINTR) {
            nRead = 1;
        }
    }
    return nRead;
}

template <class TEnough>
std::string ReadOrExit(const std::string& strFile, const char* szWhat, TEnough bEnough)
{
    const CDescriptor descriptor(strFile);
    std::string strBytes;
    if (descriptor.Get() < 0 || ReadUntil(descriptor.Get(), strBytes, bEnough) < 0) {
        throw CUsageError(std::string("cannot read the ") + szWhat + " file " + strFile + ": " +
                          std::generic_category().message(errno));
    }
    if (strBytes.size() > kMaxFile) {
        throw CUsageError(std::string("the ") + szWhat + " file " + strFile + " is longer than 64 MiB");
    }
    return strBytes;
}

} // namespace

std::string ReadWholeFile(const std::string& strFile, const char* szWhat)
{
    return ReadOrExit(strFile, szWhat,
                      [](const std::string& strBytes) { return strBytes.size() > kMaxFile; });
}

} // namespace standin_host
