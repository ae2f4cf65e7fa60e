#include "Commands/CommandFamilies.h"

#include <utility>

namespace standin_host {

std::shared_ptr<Words> AddWords(CLI::App& app, const char* szName, const char* szHelp)
{
    auto pWords = std::make_shared<Words>();
    app.add_option(szName, *pWords, szHelp)->type_name("")->required();
    return pWords;
}

std::shared_ptr<std::string> AddWord(CLI::App& app, const char* szName, const char* szHelp)
{
    auto pWord = std::make_shared<std::string>();
    app.add_option(szName, *pWord, szHelp)->type_name("")->required();
    return pWord;
}

void Request(SConsoleCommand& command, unsigned int nCmdID, SRecord record, const SAnswerForm& form)
{
    command.kind = SConsoleCommand::EKind::Request;
    command.nCmdID = nCmdID;
    command.payload = std::move(record);
    command.pForm = &form;
}

void RequestOption(SConsoleCommand& command, unsigned int nCmdID, uint32_t nOptType, const SRecord& record,
                   const SAnswerForm& form)
{
    Request(command, nCmdID, OptionPayload(nOptType, record), form);
}

void SetUpSubWindows(CLI::App& app, SConsoleCommand& command, const SSubWindowCommand& subWindows)
{
    const std::string strHelp = std::string(subWindows.szGroup) + "; repeat for several sub-windows";
    auto pWords = AddWords(app, "SUBWINDOW", strHelp.c_str());
    app.callback([&command, pWords, subWindows] {
        const std::string strShape = std::string("each sub-window takes ") + subWindows.szGroup;
        RequestOption(command, subWindows.nCmdID, subWindows.nOptType,
                      subWindows.pRecord(SubWindows(*pWords, subWindows.fields, strShape.c_str())));
        command.strTitle += Join(*pWords);
    });
}

} // namespace standin_host
