#pragma once

#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace tools {

// A file opened for reading; closed with this object.
class FileDescriptor {
public:
    // Get is negative if the file cannot be opened; errno says why.
    explicit FileDescriptor(const std::string& path)
        : m_descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC))
    {
    }
    ~FileDescriptor()
    {
        if (m_descriptor >= 0) {
            ::close(m_descriptor);
        }
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;

    int Get() const { return m_descriptor; }

private:
    int m_descriptor;
};

} // namespace tools
