#pragma once

#include <string>
#include <string_view>

namespace tools {

enum class FileUse {
    Shared,  // readable as the process's umask has it
    Private, // readable by its owner only, and on the disk before it takes the place of the old one
};

// Writes a temporary file of unpredictable name beside the target and renames it, so that a reader sees the
// old content or the new, never a part. Anything but a regular file (a device, a pipe, a link) is written in
// place. Returns an empty string on success, else a one-line reason.
std::string WriteFileAtomically(const std::string& path, std::string_view content,
                                FileUse use = FileUse::Shared);

} // namespace tools
