#include "Console/Output.h"

#include <chrono>
#include <csignal>
#include <utility>

#include <nlohmann/json.hpp>
#include <unistd.h>

#include "Base/ErrorLines.h"
#include "Base/ExitStatus.h"
#include "Base/GuidText.h"
#include "Base/TimeText.h"
#include "Commands/Records/FailureCodes.h"
#include "Commands/Records/NotificationFields.h"
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

class TextOutput final : public Output {
public:
    explicit TextOutput(HostEvents& events) : Output(events) {}

    void PrintCommand(const EndedCommand& ended) override
    {
        Line(tools::OneLine(ended.command.title) + ": " + ended.read.text);
    }

    void PrintQueued(const ConsoleCommand& command, std::size_t /*line*/) override
    {
        std::string text = tools::OneLine(command.title) + ": command " + tools::HexNumber(command.cmdID);
        if (command.CarriesOption()) {
            text += ", option " + tools::HexNumber(command.optType);
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
        const auto fields = NotificationFields(notification.data);
        Line(UtcText(notification.time) + " notification, " + kind + ": " +
             tools::OneLine(fields.empty() ? notification.data : ChannelsText(fields)));
    }

    void PrintLinkLost(const std::string& reason) override
    {
        Line(Now() + " link lost: " + tools::OneLine(reason));
    }

    void PrintLinkBack(std::chrono::milliseconds gap) override
    {
        Line(Now() + " link back after a gap of " + SecondsText(gap) +
             ": changes in between were not reported");
    }

private:
    static std::string Now() { return UtcText(std::chrono::system_clock::now()); }
};

const char* ResultName(Outcome outcome)
{
    switch (outcome) {
    case Outcome::Done:
        return "done";
    case Outcome::Queued:
        return "queued";
    case Outcome::Refused:
        return "refused";
    case Outcome::Malformed:
        return "malformed";
    case Outcome::Timeout:
        return "timeout";
    case Outcome::Lost:
        return "lost";
    case Outcome::Unanswered:
        return "unanswered";
    case Outcome::LoginRefused:
        return "loginRefused";
    case Outcome::NotConnected:
        break;
    }
    return "notConnected";
}

// The form of a line: docs/tvwall-host.schema.json. A field may be added; any other change needs a new
// number.
constexpr int kFormVersion = 1;

class JsonOutput final : public Output {
public:
    explicit JsonOutput(HostEvents& events) : Output(events) {}

    void PrintCommand(const EndedCommand& ended) override
    {
        const auto& [command, ending, read, line] = ended;
        Json object = BeginCommand(command, line);
        object["result"] = ResultName(read.outcome);
        if (ending.answer && ending.answer->kind == HostAnswer::Kind::Failure) {
            object["code"] = CodeText(ending.answer->hostCode);
        }
        if (read.deviceCode) {
            object["deviceCode"] = *read.deviceCode;
        }
        if (!read.deviceMeaning.empty()) {
            object["deviceMeaning"] = read.deviceMeaning;
        }
        if (read.fields != nullptr) {
            object["fields"] = *read.fields;
        }
        if (!read.Good()) {
            object["problem"] = read.text;
        }
        if (command.kind == ConsoleCommand::Kind::Request && command.form == nullptr) {
            AddBytes(object, ending.answer);
        }
        Print(object);
    }

    void PrintQueued(const ConsoleCommand& command, std::size_t line) override
    {
        Json object = BeginCommand(command, line);
        object["result"] = "dryRun";
        object["id"] = tools::HexNumber(command.cmdID);
        if (command.CarriesOption()) {
            object["option"] = tools::HexNumber(command.optType);
        }
        object["payload"] = tools::HexText(command.payload.bytes.data(), command.payload.bytes.size());
        Print(object);
    }

    void PrintNotification(const Notification& notification) override
    {
        using namespace ORVA2_DECODER_TVW;
        const uint32_t type = notification.info.nOptType;
        Json object = Begin(notification.time);
        object["event"] = type == TVWALL_DECODE_NOTIFY_IORES          ? "channels"
                          : type == TVWALL_DECODE_NOTIFY_IORES_STATUS ? "channelStates"
                                                                      : "unknown";
        if (Json fields = NotificationFields(notification.data); !fields.empty()) {
            object["fields"] = std::move(fields);
        }
        object["data"] = notification.data;
        object["nLen"] = notification.info.nLen;
        object["destination"] = GuidText(notification.destination);
        Print(object);
    }

    void PrintLinkLost(const std::string& reason) override
    {
        Json object = Begin(std::chrono::system_clock::now());
        object["event"] = "linkLost";
        object["reason"] = reason;
        Print(object);
    }

    void PrintLinkBack(std::chrono::milliseconds gap) override
    {
        Json object = Begin(std::chrono::system_clock::now());
        object["event"] = "linkBack";
        object["gap"] = gap.count();
        Print(object);
    }

private:
    using Json = nlohmann::ordered_json;

    static Json Begin(std::chrono::system_clock::time_point time)
    {
        return {{"v", kFormVersion}, {"time", UtcText(time)}};
    }

    static Json BeginCommand(const ConsoleCommand& command, std::size_t line)
    {
        Json object = Begin(std::chrono::system_clock::now());
        if (line != 0) {
            object["line"] = line;
        }
        object["command"] = command.typed;
        object["args"] = command.args;
        return object;
    }

    // An answer as it is, where nobody but the user knows what was asked.
    static void AddBytes(Json& object, const std::optional<HostAnswer>& answer)
    {
        object["answer"] = !answer                                     ? "none"
                           : answer->kind == HostAnswer::Kind::Failure ? "failure"
                                                                       : "buffer";
        if (answer) {
            object["hex"] = tools::HexText(answer->bytes.data(), answer->bytes.size());
        }
    }

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

void Output::PrintOwn(const ConsoleCommand& command, const ReadableAnswer& read)
{
    PrintCommand({command, {}, read, 0});
    CheckWritten();
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
    ClearProgress();
    m_failed = m_failed || !m_events.Write(STDOUT_FILENO, line);
}

} // namespace standin_host
