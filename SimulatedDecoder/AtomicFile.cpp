#include "AtomicFile.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace simulated_decoder {

std::string WriteFileAtomically(const std::string& path, std::string_view content)
{
    // Only a regular file may be replaced; a device, a pipe or the target of a link is written in place.
    std::error_code error;
    const auto type = std::filesystem::symlink_status(path, error).type();
    const bool replace =
        type == std::filesystem::file_type::not_found || type == std::filesystem::file_type::regular;
    const std::string passing = replace ? path + ".new" : path;
    std::ofstream file(passing, std::ios::binary | std::ios::trunc);
    file << content;
    file.close();
    if (file && (!replace || std::rename(passing.c_str(), path.c_str()) == 0)) {
        return {};
    }
    const std::string reason = std::generic_category().message(errno);
    if (replace) {
        (void)std::remove(passing.c_str()); // may not even be there
    }
    return "cannot write " + path + ": " + reason;
}

} // namespace simulated_decoder
