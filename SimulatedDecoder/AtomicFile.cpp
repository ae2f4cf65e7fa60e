#include "AtomicFile.h"

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <system_error>

namespace simulated_decoder {

std::string WriteFileAtomically(const std::string& path, std::string_view content)
{
    const std::string passing = path + ".new";
    std::ofstream file(passing, std::ios::binary | std::ios::trunc);
    file << content;
    file.close();
    if (file && std::rename(passing.c_str(), path.c_str()) == 0) {
        return {};
    }
    const std::string reason = std::generic_category().message(errno);
    std::remove(passing.c_str());
    return "cannot write " + path + ": " + reason;
}

} // namespace simulated_decoder
