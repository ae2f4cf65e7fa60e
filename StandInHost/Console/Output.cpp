#include "Console/Output.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <string_view>
#include <utility>

#include <nlohmann/json.hpp>
#include <unistd.h>

#include "Base/GuidText.h"
#include "Console/AnswerText.h"
#include "Tools/Common/Hex.h"
#include "Tools/Common/TerminalText.h"

namespace standin_host {

namespace {

// DEL and the control characters of two bytes, U+0080 to U+009F, as JSON can also write them: what is dumped
// is valid UTF-8 and has them in texts only.
std::string EscapeControls(const std::string& strJson)
{
    std::string strPrintable;
    for (std::size_t i = 0; i < strJson.size(); ++i) {
        const bool bPair = strJson[i] == '\xC2' && static_cast<uint8_t>(strJson[i + 1]) < 0xA0;
        if (bPair || strJson[i] == '\x7F') {
            i += bPair ? 1 : 0;
            strPrintable += "\\u00" + tools::HexText(&strJson[i], 1);
        } else {
            strPrintable += strJson[i];
        }
    }
    return strPrintable;
}

class CTextOutput final : public COutput {
public:
    explicit CTextOutput(CHostEvents& events) : COutput(events) {}

    void Command(const SConsoleCommand& command, const SAnswer* pAnswer, const SReadAnswer& read) override
    {
        const std::string strUnanswered =
            command.bHasReply ? "no answer" : "queued and run, no answer wanted";
        Line(tools::OneLine(command.strTitle) + ": " + (pAnswer == nullptr ? strUnanswered : read.strText));
    }

    void Notification(const SNotification& notification) override
    {
        using namespace ORVA2_DECODER_TVW;
        const char* szKind = notification.info.nOptType == TVWALL_DECODE_NOTIFY_IORES ? "channels changed"
                             : notification.info.nOptType == TVWALL_DECODE_NOTIFY_IORES_STATUS
                                 ? "channel states"
                                 : "unknown kind";
        Line(std::string("notification, ") + szKind + ": " + tools::OneLine(notification.strData));
    }
};

class CJsonOutput final : public COutput {
public:
    explicit CJsonOutput(CHostEvents& events) : COutput(events) {}

    void Command(const SConsoleCommand& command, const SAnswer* pAnswer, const SReadAnswer& read) override
    {
        Json object{{"command", command.nCmdID}, {"answer", "none"}, {"code", 0}, {"hex", ""}};
        if (pAnswer != nullptr) {
            object["answer"] = pAnswer->kind == SAnswer::EKind::Buffer ? "buffer" : "failure";
            object["code"] = pAnswer->nCode;
            object["hex"] = tools::HexText(pAnswer->bytes.data(), pAnswer->bytes.size());
        }
        if (read.pFields != nullptr) {
            object["fields"] = *read.pFields;
        } else if (!read.bGood && !read.strText.empty()) {
            object["problem"] = read.strText;
        }
        Print(object);
    }

    void Notification(const SNotification& notification) override
    {
        Print({{"notification", notification.nCmdID},
               {"optType", notification.info.nOptType},
               {"nLen", notification.info.nLen},
               {"destination", GuidText(notification.destination)},
               {"data", notification.strData}});
    }

private:
    using Json = nlohmann::ordered_json;

    // Bytes that are not UTF-8 become replacement characters.
    void Print(const Json& object)
    {
        Line(EscapeControls(object.dump(-1, ' ', false, Json::error_handler_t::replace)));
    }
};

} // namespace

std::unique_ptr<COutput> COutput::Create(bool bJson, CHostEvents& events)
{
    if (bJson) {
        return std::make_unique<CJsonOutput>(events);
    }
    return std::make_unique<CTextOutput>(events);
}

void COutput::Line(std::string strLine)
{
    strLine += '\n';
    for (std::string_view left = strLine; !left.empty() && !m_bFailed;) {
        if (!m_events.WaitForOutput(STDOUT_FILENO)) {
            m_bFailed = true;
            return;
        }
        // A pipe that can be written takes so much at once.
        const ssize_t nWritten =
            ::write(STDOUT_FILENO, left.data(), std::min<std::size_t>(left.size(), PIPE_BUF));
        m_bFailed = nWritten < 0 && errno != EINTR && errno != EAGAIN;
        left.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(nWritten, 0)));
    }
}

} // namespace standin_host
