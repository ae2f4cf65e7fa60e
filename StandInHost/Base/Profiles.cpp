#include "Base/Profiles.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

#include <sys/file.h>

#include "Base/CheckedJson.h"
#include "Base/ExitStatus.h"
#include "Base/Files.h"
#include "Base/UserFolders.h"
#include "Tools/Common/Address.h"
#include "Tools/Common/AtomicFile.h"
#include "Tools/Common/FileDescriptor.h"
#include "Tools/Common/Nearest.h"
#include "Tools/Common/TerminalText.h"

namespace standin_host {

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

constexpr std::size_t kLongestName = 64;
constexpr std::size_t kLongestText = 4096; // as long as a path gets

struct Key {
    const char* name;
    std::string Profile::*value;
    bool isPath;
};
constexpr Key kKeys[] = {
    {"decoder", &Profile::decoder, false},        {"user", &Profile::user, false},
    {"plugin", &Profile::plugin, true},           {"passwordFile", &Profile::passwordFile, true},
    {"deviceCodes", &Profile::deviceCodes, true},
};

// A name is a word of a command line that needs no quotes and is no option.
void CheckName(const std::string& name)
{
    const bool good = !name.empty() && name.size() <= kLongestName && name.front() != '-' &&
                      std::all_of(name.begin(), name.end(), [](unsigned char c) {
                          return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                                 c == '-' || c == '_' || c == '.';
                      });
    if (!good) {
        throw UsageError("a profile's name has 1 to 64 letters, digits, '.', '_' and '-', not '" +
                         tools::OneLine(name) + "'");
    }
}

Profile ReadProfile(const Json& value, const std::string& place)
{
    const JsonObject object(value, place, {"decoder", "user", "plugin", "passwordFile", "deviceCodes"});
    Profile profile;
    for (const Key& key : kKeys) {
        profile.*key.value = object.Text(key.name, kLongestText, "");
    }
    if (!profile.decoder.empty() && !tools::ParseAddress(profile.decoder, 1)) {
        object.Refuse("decoder", tools::AddressRemedy(profile.decoder, 1));
    }
    return profile;
}

std::string Text(const Profiles& profiles)
{
    Json all = Json::object();
    for (const auto& [name, profile] : profiles) {
        Json& one = all[name] = Json::object();
        for (const Key& key : kKeys) {
            if (!(profile.*key.value).empty()) {
                one[key.name] = profile.*key.value;
            }
        }
    }
    try {
        return Json{{"profiles", all}}.dump(2) + '\n';
    } catch (const Json::exception&) {
        throw UsageError("a profile holds texts in UTF-8 only");
    }
}

[[noreturn]] void RefuseName(const std::string& name, const Profiles& profiles, const std::string& path)
{
    std::vector<std::string> names;
    for (const auto& [known, ignored] : profiles) {
        names.push_back(known);
    }
    throw UsageError("there is no profile '" + tools::OneLine(name) + "' in " + path +
                     tools::DidYouMean(name, names));
}

// Other processes that change the profiles wait while it lives.
class FolderLock {
public:
    explicit FolderLock(const std::string& folder) : m_folder(folder)
    {
        if (m_folder.Get() < 0 || ::flock(m_folder.Get(), LOCK_EX) != 0) {
            throw UsageError("cannot use the folder " + folder + ": " +
                             std::generic_category().message(errno));
        }
    }

private:
    tools::FileDescriptor m_folder;
};

} // namespace

Profile Over(const Profile& first, const Profile& second)
{
    Profile both = first;
    for (const Key& key : kKeys) {
        if ((both.*key.value).empty()) {
            both.*key.value = second.*key.value;
        }
    }
    return both;
}

ProfileFile::ProfileFile()
{
    const std::string folder = UserFolder("XDG_CONFIG_HOME", ".config");
    m_path = folder.empty() ? "" : folder + "/profiles.json";
}

Profiles ProfileFile::Load() const
{
    const auto text = ReadOwnFile(m_path, "profile");
    if (!text) {
        return {};
    }
    const Json root = ParseJson(*text, m_path);
    const Json* all = JsonObject(root, m_path + ':', {"profiles"}).Find("profiles");
    if (all == nullptr || !all->is_object()) {
        throw UsageError(m_path + ": profiles must be an object");
    }
    Profiles profiles;
    for (const auto& [name, value] : all->items()) {
        CheckName(name);
        profiles[name] = ReadProfile(value, m_path + ": profiles." + name);
    }
    return profiles;
}

Profile ProfileFile::Find(const std::string& name) const
{
    const Profiles profiles = Load();
    const auto found = profiles.find(name);
    if (found == profiles.end()) {
        RefuseName(name, profiles, m_path);
    }
    Profile profile = found->second;
    for (const Key& key : kKeys) {
        if (key.isPath && !(profile.*key.value).empty()) {
            profile.*key.value =
                (fs::path(Folder()) / (profile.*key.value)).string(); // an absolute one stays
        }
    }
    return profile;
}

void ProfileFile::Add(const std::string& name, const Profile& profile, bool replace) const
{
    CheckName(name);
    Profile added = profile;
    for (const Key& key : kKeys) {
        if (key.isPath && !(added.*key.value).empty()) {
            added.*key.value = fs::absolute(added.*key.value).lexically_normal().string();
        }
    }
    Update([&](Profiles& profiles) {
        if (!replace && profiles.contains(name)) {
            throw UsageError("there is a profile '" + name +
                             "' already; --replace puts this one in its place");
        }
        profiles[name] = added;
    });
}

void ProfileFile::Remove(const std::vector<std::string>& names) const
{
    Update([&](Profiles& profiles) {
        for (const std::string& name : names) {
            if (profiles.erase(name) == 0) {
                RefuseName(name, profiles, m_path);
            }
        }
    });
}

template <class TChange>
void ProfileFile::Update(TChange change) const
{
    if (m_path.empty()) {
        throw UsageError("no place for profiles; set HOME or XDG_CONFIG_HOME");
    }
    MakeFolders(Folder());
    const FolderLock lock(Folder());
    Profiles profiles = Load();
    change(profiles);
    // A link is followed here, so that what it leads to is replaced as a whole.
    std::error_code ignored;
    const fs::path target = fs::canonical(m_path, ignored);
    const std::string problem = tools::WriteFileAtomically(target.empty() ? m_path : target.string(),
                                                           Text(profiles), tools::FileUse::Private);
    if (!problem.empty()) {
        throw UsageError(problem);
    }
}

std::string ProfileFile::Folder() const { return m_path.substr(0, m_path.rfind('/')); }

} // namespace standin_host
