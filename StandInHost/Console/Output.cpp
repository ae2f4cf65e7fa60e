#include "Console/Output.h"

#include <csignal>
#include <cstdio>
#include <utility>

#include <nlohmann/json.hpp>
#include <unistd.h>

#include "Base/ExitStatus.h"
#include "Base/GuidText.h"
#include "Console/AnswerText.h"
#include "Tools/Common/Hex.h"
#include "Tools/Common/TerminalText.h"

namespace standin_host {

namespace {

// DEL and the control characters of two bytes, U+0080 to U+009F, as JSON escapes: the dumped text is valid
// UTF-8 and has them only inside strings.
std::string EscapeControls(const std::string& json)
{
    std::string printable;
    for (std::size_t i = 0; i < json.size(); ++i) {
        const bool pair = json[i] == '\xC2' && static_cast<uint8_t>(json[i + 1]) < 0xA0;
        if (pair || json[i] == '\x7F') {
            i += pair ? 1 : 0;
            printable += "\\u00" + tools::HexText(&json[i], 1);
        } else {
            printable += json[i];
        }
    }
    return printable;
}

std::string IdText(uint32_t id)
{
    char digits[11];
    (void)std::snprintf(digits, sizeof digits, "0x%X", id);
    return digits;
}

class TextOutput final : public Output {
public:
    explicit TextOutput(HostEvents& events) : Output(events) {}

    void PrintCommand(const EndedCommand& ended) override
    {
        Line(tools::OneLine(ended.command.title) + ": " + ended.read.text);
    }

    void PrintQueued(const ConsoleCommand& command, std::size_t /*line*/) override
    {
        std::string text = tools::OneLine(command.title) + ": command " + IdText(command.cmdID);
        if (command.CarriesOption()) {
            text += ", option " + IdText(command.optType);
        }
        const auto& bytes = command.payload.bytes;
        text += ", payload " + (bytes.empty() ? "empty" : tools::HexText(bytes.data(), bytes.size()));
        Line(text + (command.hasReply ? "" : ", no answer wanted"));
    }

    void PrintNotification(const Notification& notification) override
    {
        using namespace ORVA2_DECODER_TVW;
        const char* kind = notification.info.nOptType == TVWALL_DECODE_NOTIFY_IORES ? "channels changed"
                           : notification.info.nOptType == TVWALL_DECODE_NOTIFY_IORES_STATUS
                               ? "channel states"
                               : "unknown kind";
        Line(std::string("notification, ") + kind + ": " + tools::OneLine(notification.data));
    }
};

class JsonOutput final : public Output {
public:
    explicit JsonOutput(HostEvents& events) : Output(events) {}

    void PrintCommand(const EndedCommand& ended) override
    {
        const auto& [command, ending, read, line] = ended;
        const auto& answer = ending.answer;
        Json object{{"command", command.cmdID}, {"answer", "none"}, {"code", 0}, {"hex", ""}};
        if (answer) {
            object["answer"] = answer->kind == HostAnswer::Kind::Buffer ? "buffer" : "failure";
            object["code"] = answer->hostCode;
            object["hex"] = tools::HexText(answer->bytes.data(), answer->bytes.size());
        }
        if (read.fields != nullptr) {
            object["fields"] = *read.fields;
        } else if (!read.Good()) {
            object["problem"] = read.text;
        }
        if (read.deviceCode) {
            object["deviceCode"] = *read.deviceCode;
        }
        if (!read.deviceMeaning.empty()) {
            object["deviceMeaning"] = read.deviceMeaning;
        }
        Print(object);
    }

    void PrintQueued(const ConsoleCommand& command, std::size_t line) override
    {
        Json object{{"command", command.title}, {"id", IdText(command.cmdID)}};
        if (command.CarriesOption()) {
            object["option"] = IdText(command.optType);
        }
        object["payload"] = tools::HexText(command.payload.bytes.data(), command.payload.bytes.size());
        object["line"] = line;
        Print(object);
    }

    void PrintNotification(const Notification& notification) override
    {
        Print({{"notification", notification.cmdID},
               {"optType", notification.info.nOptType},
               {"nLen", notification.info.nLen},
               {"destination", GuidText(notification.destination)},
               {"data", notification.data}});
    }

private:
    using Json = nlohmann::ordered_json;

    // Bytes that are not valid UTF-8 become replacement characters.
    void Print(const Json& object)
    {
        Line(EscapeControls(object.dump(-1, ' ', false, Json::error_handler_t::replace)));
    }
};

} // namespace

std::unique_ptr<Output> Output::Create(bool json, HostEvents& events)
{
    if (json) {
        return std::make_unique<JsonOutput>(events);
    }
    return std::make_unique<TextOutput>(events);
}

void Output::CheckWritten() const
{
    if (m_failed) {
        m_events.CheckInterrupted();
        throw ExitError(kExitSignalBase + SIGPIPE, "cannot write to standard output");
    }
}

void Output::Line(std::string line)
{
    line += '\n';
    m_failed = m_failed || !m_events.Write(STDOUT_FILENO, line);
}

} // namespace standin_host
