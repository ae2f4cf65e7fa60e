#include "Tools/Common/PasswordFile.h"

#include <algorithm>
#include <array>
#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace tools {

namespace {

constexpr std::size_t kLongest = 4096; // bytes that are read; no password is that long

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

    // Reads from the file until a line is complete; false when it cannot be read.
    bool ReadLine(std::string& text) const
    {
        std::array<char, kLongest> buffer;
        ssize_t size = 1;
        while (size != 0 && text.size() < kLongest && text.find('\n') == std::string::npos) {
            size = ::read(m_descriptor, buffer.data(), buffer.size() - text.size());
            if (size < 0 && errno != EINTR) {
                return false;
            }
            text.append(buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
        }
        return true;
    }

private:
    int m_descriptor;
};

} // namespace

std::optional<std::string> ReadPasswordFile(const std::string& path)
{
    std::string line;
    if (!Descriptor(path).ReadLine(line)) {
        return std::nullopt;
    }
    line.erase(std::min(line.find('\n'), line.size()));
    if (line.ends_with('\r')) {
        line.pop_back();
    }
    return line;
}

} // namespace tools
