#include "Console/HistoryFile.h"

#include <filesystem>
#include <fstream>
#include <numeric>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Base/UserFolders.h"

namespace standin_host {

namespace {

namespace fs = std::filesystem;

constexpr mode_t kOwnerOnly = 0600;

// One write, so that lines of different shells do not mix.
bool Write(const std::string& path, int flags, const std::string& text)
{
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | flags, kOwnerOnly);
    if (descriptor < 0) {
        return false;
    }
    const bool written = ::fchmod(descriptor, kOwnerOnly) == 0 &&
                         ::write(descriptor, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    ::close(descriptor);
    return written;
}

} // namespace

HistoryFile::HistoryFile()
{
    const std::string folder = UserFolder("XDG_STATE_HOME", ".local/state");
    m_file = folder.empty() ? "" : folder + "/history";
}

std::vector<std::string> HistoryFile::Load() const
{
    std::vector<std::string> lines;
    std::ifstream file(m_file);
    for (std::string line; std::getline(file, line);) {
        lines.push_back(line);
    }
    const bool cut = lines.size() >= 2 * kMaxLines;
    if (lines.size() > kMaxLines) {
        lines.erase(lines.begin(), lines.end() - kMaxLines);
    }
    if (cut) {
        const std::string passing = m_file + ".new";
        const auto text = std::accumulate(
            lines.begin(), lines.end(), std::string(),
            [](std::string all, const std::string& line) { return std::move(all) + line + '\n'; });
        std::error_code ignored;
        if (Write(passing, O_TRUNC, text)) {
            fs::rename(passing, m_file, ignored);
        }
    }
    return lines;
}

void HistoryFile::Append(const std::string& line) const
{
    if (!m_file.empty()) {
        MakeFolders(fs::path(m_file).parent_path());
        Write(m_file, O_APPEND, line + '\n');
    }
}

} // namespace standin_host
