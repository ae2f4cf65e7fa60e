#include "Server/AppendedFile.h"

#include <cerrno>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <spdlog/spdlog.h>
#include <sys/stat.h>
#include <unistd.h>

namespace simulated_decoder {

namespace {

std::string Reason(int error)
{
    return error == EAGAIN ? "its reader stands still" : std::generic_category().message(error);
}

bool IsPipe(int descriptor)
{
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && S_ISFIFO(status.st_mode);
}

} // namespace

AppendedFile::AppendedFile(const std::string& path, std::string_view head) : m_path(path)
{
    if (path.empty()) {
        return;
    }
    m_descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (m_descriptor < 0) {
        throw std::runtime_error("cannot write " + path + ": " + Reason(errno));
    }
    if (IsPipe(m_descriptor)) {
        constexpr int kRoomForReader = 1 << 20; // bytes; less is fine if the system grants less
        (void)::fcntl(m_descriptor, F_SETPIPE_SZ, kRoomForReader);
        (void)::fcntl(m_descriptor, F_SETFL, O_NONBLOCK);
    }
    if (const int error = Append(head)) {
        Close();
        throw std::runtime_error("cannot write " + path + ": " + Reason(error));
    }
}

AppendedFile::~AppendedFile() { Close(); }

void AppendedFile::Write(std::string_view bytes)
{
    const int error = IsOpen() ? Append(bytes) : 0;
    if (error != 0) {
        spdlog::error("cannot write {} any more: {}", m_path, Reason(error));
        Close();
    }
}

int AppendedFile::Append(std::string_view bytes) const
{
    while (!bytes.empty()) {
        const ssize_t written = ::write(m_descriptor, bytes.data(), bytes.size());
        if (written >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            return errno;
        }
    }
    return 0;
}

void AppendedFile::Close()
{
    if (IsOpen()) {
        (void)::close(m_descriptor);
        m_descriptor = -1;
    }
}

} // namespace simulated_decoder
