#include "Tools/Common/PasswordFile.h"

#include <algorithm>
#include <array>
#include <cerrno>

#include <unistd.h>

#include "Tools/Common/FileDescriptor.h"

namespace tools {

namespace {

constexpr std::size_t kLongest = 4096; // bytes that are read; no password is that long

// Reads until a line is whole, or as far as is looked at; false when the file cannot be read.
bool ReadLine(int descriptor, std::string& text)
{
    std::array<char, kLongest> buffer;
    ssize_t size = 1;
    while (size != 0 && text.size() < kLongest && text.find('\n') == std::string::npos) {
        size = ::read(descriptor, buffer.data(), buffer.size() - text.size());
        if (size < 0 && errno != EINTR) {
            return false;
        }
        text.append(buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    }
    return true;
}

} // namespace

std::optional<std::string> ReadPasswordFile(const std::string& path)
{
    std::string line;
    const FileDescriptor file(path);
    if (file.Get() < 0 || !ReadLine(file.Get(), line)) {
        return std::nullopt;
    }
    line.erase(std::min(line.find('\n'), line.size()));
    if (line.ends_with('\r')) {
        line.pop_back();
    }
    return line;
}

} // namespace tools
