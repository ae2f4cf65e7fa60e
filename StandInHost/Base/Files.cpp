#include "Base/Files.h"

#include <cerrno>
#include <system_error>

#include <sys/stat.h>
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

std::string FileText(const std::string& path, const char* what)
{
    return std::string("the ") + what + " file " + path;
}

std::string ReadOpenFile(const tools::FileDescriptor& file, const std::string& path, const char* what)
{
    std::string content;
    if (file.Get() < 0 || ReadAll(file.Get(), content) < 0) {
        throw UsageError("cannot read " + FileText(path, what) + ": " +
                         std::generic_category().message(errno));
    }
    if (content.size() > kMaxFile) {
        throw UsageError(FileText(path, what) + " is longer than 64 MiB");
    }
    return content;
}

} // namespace

std::string ReadWholeFile(const std::string& path, const char* what)
{
    return ReadOpenFile(tools::FileDescriptor(path), path, what);
}

std::optional<std::string> ReadOwnFile(const std::string& path, const char* what)
{
    const tools::FileDescriptor file(path);
    struct stat status {};
    if (file.Get() < 0 && errno == ENOENT) {
        return std::nullopt;
    }
    if (file.Get() >= 0 && ::fstat(file.Get(), &status) == 0) {
        if (status.st_uid != ::geteuid() && status.st_uid != 0) {
            throw UsageError(FileText(path, what) + " belongs to someone else; make it yours, or remove it");
        }
        if ((status.st_mode & (S_IWGRP | S_IWOTH)) != 0) {
            throw UsageError("others may write " + FileText(path, what) +
                             "; look whether it says what you want, then chmod go-w it");
        }
    }
    return ReadOpenFile(file, path, what);
}

} // namespace standin_host
