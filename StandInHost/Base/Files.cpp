#include "Base/Files.h"

#include <cerrno>
#include <system_error>

#include <unistd.h>

#include "Base/ExitStatus.h"
#include "Tools/Common/FileDescriptor.h"

namespace standin_host {

namespace {

// Reads to the end of the file, or past kMaxFile. A negative result leaves the reason in errno.
ssize_t ReadAll(int descriptor, std::string& content)
{
    char buffer[4096];
    ssize_t readCount = 1;
    while (readCount > 0 && content.size() <= kMaxFile) {
        readCount = ::read(descriptor, buffer, sizeof buffer);
        if (readCount > 0) {
            content.append(buffer, static_cast<std::size_t>(readCount));
        } else if (readCount < 0 && errno == EINTR) {
            readCount = 1;
        }
    }
    return readCount;
}

} // namespace

std::string ReadWholeFile(const std::string& path, const char* what)
{
    const tools::FileDescriptor file(path);
    std::string content;
    if (file.Get() < 0 || ReadAll(file.Get(), content) < 0) {
        throw UsageError(std::string("cannot read the ") + what + " file " + path + ": " +
                         std::generic_category().message(errno));
    }
    if (content.size() > kMaxFile) {
        throw UsageError(std::string("the ") + what + " file " + path + " is longer than 64 MiB");
    }
    return content;
}

} // namespace standin_host
