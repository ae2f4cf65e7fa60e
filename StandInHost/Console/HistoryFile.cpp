#include "Console/HistoryFile.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <numeric>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace standin_host {

namespace {

namespace fs = std::filesystem;

constexpr mode_t kOwnerOnly = 0600;
constexpr mode_t kOwnerFolder = 0700;

std::string Variable(const char* szName)
{
    const char* szValue = std::getenv(szName);
    return szValue == nullptr ? "" : szValue;
}

// Makes the folders that are missing, for the owner alone.
void MakeFolders(const fs::path& folder)
{
    if (folder.has_relative_path() && ::access(folder.c_str(), F_OK) != 0) {
        MakeFolders(folder.parent_path());
        (void)::mkdir(folder.c_str(), kOwnerFolder);
    }
}

// One write, so that lines of several shells do not mix.
bool Write(const std::string& strFile, int nFlags, const std::string& strText)
{
    const int nDescriptor = ::open(strFile.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | nFlags, kOwnerOnly);
    if (nDescriptor < 0) {
        return false;
    }
    const bool bWritten =
        ::fchmod(nDescriptor, kOwnerOnly) == 0 &&
        ::write(nDescriptor, strText.data(), strText.size()) == static_cast<ssize_t>(strText.size());
    ::close(nDescriptor);
    return bWritten;
}

} // namespace

CHistoryFile::CHistoryFile()
{
    std::string strState = Variable("XDG_STATE_HOME");
    if (!strState.starts_with('/')) { // which the standard for this variable says to ignore
        const std::string strHome = Variable("HOME");
        strState = strHome.empty() ? "" : strHome + "/.local/state";
    }
    m_strFile = strState.empty() ? "" : strState + "/tvwall/history";
}

std::vector<std::string> CHistoryFile::Load() const
{
    std::vector<std::string> lines;
    std::ifstream file(m_strFile);
    for (std::string strLine; std::getline(file, strLine);) {
        lines.push_back(strLine);
    }
    const bool bCut = lines.size() >= 2 * kMaxLines;
    if (lines.size() > kMaxLines) {
        lines.erase(lines.begin(), lines.end() - kMaxLines);
    }
    if (bCut) {
        const std::string strNew = m_strFile + ".new";
        const auto strText = std::accumulate(lines.begin(), lines.end(), std::string(),
                                             [](std::string strAll, const std::string& strLine) {
                                                 return std::move(strAll) + strLine + '\n';
                                             });
        std::error_code ignored;
        if (Write(strNew, O_TRUNC, strText)) {
            fs::rename(strNew, m_strFile, ignored);
        }
    }
    return lines;
}

void CHistoryFile::Append(const std::string& strLine) const
{
    if (!m_strFile.empty()) {
        MakeFolders(fs::path(m_strFile).parent_path());
        Write(m_strFile, O_APPEND, strLine + '\n');
    }
}

} // namespace standin_host
