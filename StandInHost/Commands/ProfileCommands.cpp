// The commands that keep profiles. They need no decoder.

#include <algorithm>

#include "Base/ExitStatus.h"
#include "Base/Profiles.h"
#include "Commands/CommandFamilies.h"
#include "Commands/Records/TextTable.h"

namespace standin_host {

namespace {

// A profile as JSON: what it says, and nothing of what it leaves open.
Fields ProfileFields(const std::string& name, const Profile& profile)
{
    Fields fields{{"name", name}};
    for (const auto& [key, value] :
         {std::pair("decoder", profile.decoder), std::pair("user", profile.user),
          std::pair("passwordFile", profile.passwordFile), std::pair("deviceCodes", profile.deviceCodes),
          std::pair("plugin", profile.plugin)}) {
        if (!value.empty()) {
            fields[key] = value;
        }
    }
    return fields;
}

ProfileAnswer List()
{
    const ProfileFile file;
    const Profiles profiles = file.Load();
    Fields fields{{"file", file.Path()}, {"profiles", Fields::array()}};
    std::vector<std::vector<std::string>> rows{
        {"PROFILE", "DECODER", "USER", "PASSWORD FILE", "DEVICE CODES", "PLUG-IN"}};
    for (const auto& [name, profile] : profiles) {
        rows.push_back(
            {name, profile.decoder, profile.user, profile.passwordFile, profile.deviceCodes, profile.plugin});
        std::replace(rows.back().begin(), rows.back().end(), std::string(), std::string("-"));
        fields["profiles"].push_back(ProfileFields(name, profile));
    }
    return {profiles.empty() ? "none; profile add NAME keeps what the options say"
                             : file.Path() + TextTable(rows),
            std::move(fields)};
}

ProfileAnswer Add(const std::string& name, const Profile& profile, bool replace)
{
    if (profile.decoder.empty()) {
        throw UsageError("a profile needs a decoder; give --decoder HOST:PORT");
    }
    if (profile.passwordFile == "-") {
        throw UsageError("a profile names a password file, not standard input");
    }
    ProfileFile().Add(name, profile, replace);
    return {"kept", nullptr};
}

ProfileAnswer Remove(const Words& names)
{
    ProfileFile().Remove(names);
    return {"removed", nullptr};
}

} // namespace

void SetUpProfileList(CLI::App& app, ConsoleCommand& command)
{
    app.callback([&command] {
        command.kind = ConsoleCommand::Kind::Profile;
        command.profileWork = [](const Profile&) { return List(); };
    });
}

void SetUpProfileAdd(CLI::App& app, ConsoleCommand& command)
{
    const auto name = AddWord(app, "NAME", "the profile's name");
    const auto replace = std::make_shared<bool>(false);
    app.add_flag("--replace", *replace, "put it in the place of one of that name");
    app.callback([&command, name, replace] {
        command.kind = ConsoleCommand::Kind::Profile;
        command.profileSettings = true;
        command.title = "profile " + *name;
        command.args = {{"name", *name}, {"replace", *replace}};
        command.profileWork = [name = *name, replace = *replace](const Profile& settings) {
            return Add(name, settings, replace);
        };
    });
}

void SetUpProfileRemove(CLI::App& app, ConsoleCommand& command)
{
    const auto names = AddWords(app, "PROFILE", "names of profiles");
    app.callback([&command, names] {
        command.kind = ConsoleCommand::Kind::Profile;
        command.title = "profile" + Join(*names);
        command.args["names"] = *names;
        command.profileWork = [names = *names](const Profile&) { return Remove(names); };
    });
}

void SetUpConnect(CLI::App& app, ConsoleCommand& command)
{
    const auto name = std::make_shared<std::string>();
    app.add_option("PROFILE", *name, "where to connect, and as whom; without it, as before")->type_name("");
    app.callback([&command, name] {
        command.kind = ConsoleCommand::Kind::Connect;
        command.profile = *name;
    });
}

} // namespace standin_host
