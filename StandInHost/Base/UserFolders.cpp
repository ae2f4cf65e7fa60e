#include "Base/UserFolders.h"

#include <cstdlib>

#include <sys/stat.h>
#include <unistd.h>

namespace standin_host {

std::string EnvironmentText(const char* variable)
{
    const char* value = std::getenv(variable);
    return value == nullptr ? "" : value;
}

std::string UserFolder(const char* variable, const char* inHome)
{
    std::string folder = EnvironmentText(variable);
    if (!folder.starts_with('/')) { // to be ignored, by the standard of these variables
        const std::string home = EnvironmentText("HOME");
        folder = home.empty() ? "" : home + '/' + inHome;
    }
    return folder.empty() ? "" : folder + "/tvwall";
}

void MakeFolders(const std::string& folder)
{
    constexpr mode_t kOwnerOnly = 0700;
    if (!folder.empty() && ::access(folder.c_str(), F_OK) != 0) {
        MakeFolders(folder.substr(0, folder.rfind('/')));
        (void)::mkdir(folder.c_str(), kOwnerOnly);
    }
}

} // namespace standin_host
