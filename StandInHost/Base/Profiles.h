#pragma once
// What the user need not say again: named decoders and accounts, never a password.

#include <map>
#include <string>
#include <vector>

namespace standin_host {

// Where to connect and as whom. What is not said is empty.
struct Profile {
    std::string decoder; // HOST:PORT
    std::string user;
    std::string plugin; // this and what follows: paths of files
    std::string passwordFile;
    std::string deviceCodes;
};

// The first's values, and the second's where the first says nothing.
Profile Over(const Profile& first, const Profile& second);

using Profiles = std::map<std::string, Profile>;

// The user's profiles, in a file that nobody else may write: it names a library to load. Throws UsageError,
// with one line, for a file that belongs to someone else, is not whole, or says what no profile does.
class ProfileFile {
public:
    // At $XDG_CONFIG_HOME/tvwall/profiles.json, else ~/.config/tvwall/profiles.json.
    ProfileFile();

    const std::string& Path() const { return m_path; }
    // None when there is no file.
    Profiles Load() const;
    // Throws UsageError when there is none of that name. Relative paths are seen from the file's folder.
    Profile Find(const std::string& name) const;
    // Paths become absolute. An existing profile is kept unless it is to be replaced.
    void Add(const std::string& name, const Profile& profile, bool replace) const;
    // All of them or, when one is missing, none.
    void Remove(const std::vector<std::string>& names) const;

private:
    template <class TChange>
    void Update(TChange change) const;
    std::string Folder() const;

    std::string m_path; // empty without a home
};

} // namespace standin_host
