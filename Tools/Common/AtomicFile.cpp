#include "Tools/Common/AtomicFile.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <random>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Tools/Common/Hex.h"

namespace tools {

namespace {

constexpr mode_t kOwnerOnly = 0600;
constexpr mode_t kAsUmaskHasIt = 0666;

// An unpredictable name, so that nobody can have placed a file or a link there.
std::string PassingName(const std::string& path)
{
    std::random_device random;
    const std::random_device::result_type numbers[] = {random(), random()};
    return path + '.' + HexText(numbers, sizeof numbers);
}

bool WriteAndClose(int descriptor, std::string_view content, FileUse use)
{
    std::FILE* file = descriptor < 0 ? nullptr : ::fdopen(descriptor, "wb");
    if (file == nullptr) {
        return false;
    }
    bool written =
        std::fwrite(content.data(), 1, content.size(), file) == content.size() && std::fflush(file) == 0;
    written = written && (use == FileUse::Shared || ::fsync(descriptor) == 0);
    return std::fclose(file) == 0 && written;
}

} // namespace

std::string WriteFileAtomically(const std::string& path, std::string_view content, FileUse use)
{
    // Only a regular file may be replaced; a device, a pipe or the target of a link is written in place.
    std::error_code error;
    const auto type = std::filesystem::symlink_status(path, error).type();
    const bool replace =
        type == std::filesystem::file_type::not_found || type == std::filesystem::file_type::regular;
    const std::string target = replace ? PassingName(path) : path;
    const int how = replace ? O_CREAT | O_EXCL | O_NOFOLLOW : O_CREAT | O_TRUNC;
    const mode_t mode = use == FileUse::Private ? kOwnerOnly : kAsUmaskHasIt;
    const int descriptor = ::open(target.c_str(), O_WRONLY | O_CLOEXEC | how, mode);
    if (WriteAndClose(descriptor, content, use) &&
        (!replace || std::rename(target.c_str(), path.c_str()) == 0)) {
        return {};
    }
    const std::string reason = std::generic_category().message(errno);
    if (replace && descriptor >= 0) {
        (void)std::remove(target.c_str());
    }
    return "cannot write " + path + ": " + reason;
}

} // namespace tools
