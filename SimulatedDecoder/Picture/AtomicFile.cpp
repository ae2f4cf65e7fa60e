#include "Picture/AtomicFile.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <random>
#include <system_error>

#include <fcntl.h>
#include <spdlog/fmt/fmt.h>

namespace simulated_decoder {

namespace {

// An unpredictable name, so that nobody can have placed a file or a link there.
std::string PassingName(const std::string& path)
{
    std::random_device random;
    return fmt::format("{}.{:08x}{:08x}", path, random(), random());
}

bool WriteAndClose(int descriptor, std::string_view content)
{
    std::FILE* file = descriptor < 0 ? nullptr : ::fdopen(descriptor, "wb");
    if (file == nullptr) {
        return false;
    }
    const bool written = std::fwrite(content.data(), 1, content.size(), file) == content.size();
    return std::fclose(file) == 0 && written;
}

} // namespace

std::string WriteFileAtomically(const std::string& path, std::string_view content)
{
    // Only a regular file may be replaced; a device, a pipe or the target of a link is written in place.
    std::error_code error;
    const auto type = std::filesystem::symlink_status(path, error).type();
    const bool replace =
        type == std::filesystem::file_type::not_found || type == std::filesystem::file_type::regular;
    const std::string target = replace ? PassingName(path) : path;
    const int how = replace ? O_CREAT | O_EXCL | O_NOFOLLOW : O_CREAT | O_TRUNC;
    const int descriptor = ::open(target.c_str(), O_WRONLY | O_CLOEXEC | how, 0666);
    if (WriteAndClose(descriptor, content) && (!replace || std::rename(target.c_str(), path.c_str()) == 0)) {
        return {};
    }
    const std::string reason = std::generic_category().message(errno);
    if (replace && descriptor >= 0) {
        (void)std::remove(target.c_str());
    }
    return "cannot write " + path + ": " + reason;
}

} // namespace simulated_decoder
