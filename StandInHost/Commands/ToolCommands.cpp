// The program's commands beyond those for the wall.

#include "Base/ExitStatus.h"
#include "Base/Files.h"
#include "Base/TimeText.h"
#include "Commands/CommandFamilies.h"
#include "Tools/Common/Hex.h"

namespace standin_host {

namespace {

std::chrono::milliseconds Duration(const std::string& text)
{
    const auto time = ParseDuration(text);
    if (!time) {
        throw UsageError("--for takes a number with ms, s, m, h or d, such as 10s, up to 1000d, not '" +
                         text + "'");
    }
    return *time;
}

} // namespace

void SetUpWatch(CLI::App& app, ConsoleCommand& command)
{
    const auto count = std::make_shared<std::string>();
    auto* const limit = app.add_option("--count", *count, "end after so many notifications")->type_name("N");
    const auto time = std::make_shared<std::string>();
    auto* const end =
        app.add_option("--for", *time, "end after that time, such as 10s, 5m or 1h")->type_name("DURATION");
    app.add_flag("--reconnect", command.reconnect,
                 "come back by itself when the link is lost, after 1 s to 30 s; a refused login ends it");
    app.callback([&command, count, limit, time, end] {
        command.kind = ConsoleCommand::Kind::Watch;
        if (limit->count() != 0) {
            command.notifications = Unsigned(*count, "--count");
        }
        if (end->count() != 0) {
            command.watchFor = Duration(*time);
        }
    });
}

void SetUpScript(CLI::App& app, ConsoleCommand& command)
{
    app.add_option("FILE", command.scriptFile, "script file; - is standard input")->type_name("")->required();
    app.add_flag("--stream", command.stream,
                 "run each line as it comes, instead of checking all of them first");
    app.add_flag("--stop-on-failure", command.stopOnFailure, "end at the first command that fails");
    app.callback([&command] { command.kind = ConsoleCommand::Kind::Script; });
}

namespace {

struct RawArguments {
    std::string id;
    std::string option;
    std::string path;
    std::string hex;
    bool noReply = false;

    Record Payload() const
    {
        Record record;
        if (!path.empty()) {
            const std::string content = ReadWholeFile(path, "payload");
            record.bytes.assign(content.begin(), content.end());
        } else if (auto bytes = tools::ParseHex(hex)) {
            record.bytes = std::move(*bytes);
        } else {
            throw UsageError("--hex takes pairs of hexadecimal digits");
        }
        return option.empty() ? record : OptionPayload(Unsigned(option, "--option"), record);
    }

    // Without the bytes, which may hold a password.
    Fields Args() const
    {
        Fields args{{"id", tools::HexNumber(Unsigned(id, "the command id"))}};
        if (!option.empty()) {
            args["option"] = tools::HexNumber(Unsigned(option, "--option"));
        }
        if (!path.empty()) {
            args["payload"] = path;
        }
        if (noReply) {
            args["noReply"] = true;
        }
        return args;
    }
};

} // namespace

void SetUpRaw(CLI::App& app, ConsoleCommand& command)
{
    const auto arguments = std::make_shared<RawArguments>();
    app.add_option("ID", arguments->id, "host command id, decimal or 0x...")->type_name("")->required();
    app.add_option("--option", arguments->option,
                   "put the option head with this type in front of the payload")
        ->type_name("TYPE");
    auto* file =
        app.add_option("--payload", arguments->path, "file with the payload bytes")->type_name("FILE");
    app.add_option("--hex", arguments->hex, "payload bytes as hexadecimal digits")
        ->type_name("HEX")
        ->excludes(file);
    app.add_flag("--no-reply", arguments->noReply, "queue a command that wants no answer");
    app.callback([&command, arguments] {
        command.kind = ConsoleCommand::Kind::Request;
        command.args = arguments->Args();
        command.payload = arguments->Payload();
        command.optType = ByteReader(command.payload.bytes).U32(); // the user's bytes may include the head
        command.cmdID = Unsigned(arguments->id, "the command id");
        command.hasReply = !arguments->noReply;
        command.readsFiles = !arguments->path.empty();
        command.title += ' ' + arguments->id;
        if (!arguments->option.empty()) {
            command.title += " option " + arguments->option;
        }
    });
}

} // namespace standin_host
