// What the program does besides the wall's own commands.

#include "Base/ExitStatus.h"
#include "Base/Files.h"
#include "Commands/CommandFamilies.h"
#include "Tools/Common/Hex.h"

namespace standin_host {

void SetUpWatch(CLI::App& app, SConsoleCommand& command)
{
    const auto pCount = std::make_shared<std::string>();
    app.add_option("--count", *pCount, "end after so many notifications")->type_name("N");
    app.callback([&command, pCount] {
        command.kind = SConsoleCommand::EKind::Watch;
        if (!pCount->empty()) {
            command.nNotifications = Unsigned(*pCount, "--count");
        }
    });
}

void SetUpScript(CLI::App& app, SConsoleCommand& command)
{
    app.add_option("FILE", command.strScriptFile, "script file; - is standard input")->required();
    app.callback([&command] { command.kind = SConsoleCommand::EKind::Script; });
}

namespace {

struct SRawArguments {
    std::string strId;
    std::string strOption;
    std::string strFile;
    std::string strHex;
    bool bNoReply = false;

    SRecord Payload() const
    {
        SRecord record;
        if (!strFile.empty()) {
            const std::string strBytes = ReadWholeFile(strFile, "payload");
            record.bytes.assign(strBytes.begin(), strBytes.end());
        } else if (auto bytes = tools::ParseHex(strHex)) {
            record.bytes = std::move(*bytes);
        } else {
            throw CUsageError("--hex takes pairs of hexadecimal digits");
        }
        return strOption.empty() ? record : OptionPayload(Unsigned(strOption, "--option"), record);
    }
};

} // namespace

void SetUpRaw(CLI::App& app, SConsoleCommand& command)
{
    const auto pArguments = std::make_shared<SRawArguments>();
    app.add_option("ID", pArguments->strId, "host command id, decimal or 0x...")->type_name("")->required();
    app.add_option("--option", pArguments->strOption,
                   "put the option head with this type in front of the payload")
        ->type_name("TYPE");
    auto* pFile =
        app.add_option("--payload", pArguments->strFile, "file with the payload bytes")->type_name("FILE");
    app.add_option("--hex", pArguments->strHex, "payload bytes as hexadecimal digits")
        ->type_name("HEX")
        ->excludes(pFile);
    app.add_flag("--no-reply", pArguments->bNoReply, "queue a command that wants no answer");
    app.callback([&command, pArguments] {
        command.kind = SConsoleCommand::EKind::Request;
        command.payload = pArguments->Payload();
        command.nCmdID = Unsigned(pArguments->strId, "the command id");
        command.bHasReply = !pArguments->bNoReply;
        command.strTitle += ' ' + pArguments->strId;
        if (!pArguments->strOption.empty()) {
            command.strTitle += " option " + pArguments->strOption;
        }
    });
}

} // namespace standin_host
