#include "Base/Files.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

#include "Base/ExitStatus.h"

namespace standin_host {

namespace {

class Descriptor {
public:
    explicit Descriptor(const std::string& path) : m_descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}
    ~Descriptor()
    {
        if (m_descriptor >= 0) {
            ::close(m_descriptor);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Get() const { return m_descriptor; }

private:
    int m_descriptor;
};

// Reads to the end of the file or until there is enough. A negative result leaves the reason in errno.
template <class TEnough>
ssize_t ReadUntil(int descriptor, std::string& content, TEnough enough)
{
    char buffer[4096];
    ssize_t readCount = 1;
    while (readCount > 0 && !enough(content)) {
        readCount = ::read(descriptor, buffer, sizeof buffer);
        if (readCount > 0) {
            content.append(buffer, static_cast<std::size_t>(readCount));
        } else if (readCount < 0 && errno == EINTR) {
            readCount = 1;
        }
    }
    return readCount;
}

template <class TEnough>
std::string ReadOrExit(const std::string& path, const char* what, TEnough enough)
{
    const Descriptor descriptor(path);
    std::string content;
    if (descriptor.Get() < 0 || ReadUntil(descriptor.Get(), content, enough) < 0) {
        throw UsageError(std::string("cannot read the ") + what + " file " + path + ": " +
                         std::generic_category().message(errno));
    }
    if (content.size() > kMaxFile) {
        throw UsageError(std::string("the ") + what + " file " + path + " is longer than 64 MiB");
    }
    return content;
}

} // namespace

std::string ReadWholeFile(const std::string& path, const char* what)
{
    return ReadOrExit(path, what, [](const std::string& content) { return content.size() > kMaxFile; });
}

} // namespace standin_host
