#include "Commands/CommandFamilies.h"

#include <utility>

namespace standin_host {

std::shared_ptr<Words> AddWords(CLI::App& app, const char* name, const char* help)
{
    auto words = std::make_shared<Words>();
    app.add_option(name, *words, help)->type_name("")->required();
    return words;
}

std::shared_ptr<std::string> AddWord(CLI::App& app, const char* name, const char* help)
{
    auto word = std::make_shared<std::string>();
    app.add_option(name, *word, help)->type_name("")->required();
    return word;
}

void Request(ConsoleCommand& command, unsigned int cmdID, Record record, const AnswerForm& form)
{
    command.kind = ConsoleCommand::Kind::Request;
    command.cmdID = cmdID;
    command.payload = std::move(record);
    command.form = &form;
}

void RequestOption(ConsoleCommand& command, unsigned int cmdID, uint32_t optType, const Record& record,
                   const AnswerForm& form)
{
    Request(command, cmdID, OptionPayload(optType, record), form);
    command.optType = optType;
}

namespace {

Fields SubWindowArgs(const std::vector<SubWindows>& windows, const SubWindowCommand& subWindows)
{
    Fields list = Fields::array();
    for (const SubWindows& window : windows) {
        for (const SubWindow& sub : window.subWindows) {
            Fields item{{"window", window.window}, {"index", sub.index}};
            std::size_t i = 0; // of the fields that follow window and index
            for (const int64_t value : {sub.first, sub.second}) {
                if (i + 2 < subWindows.fields.size()) {
                    const bool isSwitch = subWindows.fields[i + 2].isSwitch;
                    item[subWindows.keys[i]] = isSwitch ? Fields(value != 0) : Fields(value);
                    ++i;
                }
            }
            list.push_back(std::move(item));
        }
    }
    return list;
}

} // namespace

void SetUpSubWindows(CLI::App& app, ConsoleCommand& command, const SubWindowCommand& subWindows)
{
    const std::string help = std::string(subWindows.group) + "; repeat for several sub-windows";
    auto words = AddWords(app, "SUBWINDOW", help.c_str());
    app.callback([&command, words, subWindows] {
        const std::string shape = std::string("each sub-window takes ") + subWindows.group;
        const auto windows = ReadSubWindows(*words, subWindows.fields, shape.c_str());
        RequestOption(command, subWindows.cmdID, subWindows.optType, subWindows.makeRecord(windows));
        command.args["subWindows"] = SubWindowArgs(windows, subWindows);
        command.title += Join(*words);
    });
}

} // namespace standin_host
