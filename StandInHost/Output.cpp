#include "Output.h"

#include <cstdio>

#include <nlohmann/json.hpp>

#include "AnswerText.h"
#include "Text.h"

namespace standin_host {

namespace {

class CTextOutput final : public COutput {
public:
    void Command(const SConsoleCommand& command, const SAnswer* pAnswer, const SReadAnswer& read) override
    {
        const std::string strUnanswered =
            command.bHasReply ? "no answer" : "queued and run, no answer wanted";
        Line(OneLine(command.strTitle) + ": " + (pAnswer == nullptr ? strUnanswered : read.strText));
    }

    void Notification(const SNotification& notification) override
    {
        using namespace ORVA2_DECODER_TVW;
        const char* szKind = notification.info.nOptType == TVWALL_DECODE_NOTIFY_IORES ? "channels changed"
                             : notification.info.nOptType == TVWALL_DECODE_NOTIFY_IORES_STATUS
                                 ? "channel states"
                                 : "unknown kind";
        Line(std::string("notification, ") + szKind + ": " + OneLine(notification.strData));
    }
};

class CJsonOutput final : public COutput {
public:
    void Command(const SConsoleCommand& command, const SAnswer* pAnswer, const SReadAnswer& read) override
    {
        Json object{{"command", command.nCmdID}, {"answer", "none"}, {"code", 0}, {"hex", ""}};
        if (pAnswer != nullptr) {
            object["answer"] = pAnswer->kind == SAnswer::EKind::Buffer ? "buffer" : "failure";
            object["code"] = pAnswer->nCode;
            object["hex"] = HexText(pAnswer->bytes.data(), pAnswer->bytes.size());
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
    void Print(const Json& object) { Line(object.dump(-1, ' ', false, Json::error_handler_t::replace)); }
};

} // namespace

std::unique_ptr<COutput> COutput::Create(bool bJson)
{
    if (bJson) {
        return std::make_unique<CJsonOutput>();
    }
    return std::make_unique<CTextOutput>();
}

void COutput::Line(const std::string& strLine)
{
    const bool bWritten = std::fwrite(strLine.data(), 1, strLine.size(), stdout) == strLine.size() &&
                          std::fputc('\n', stdout) != EOF && std::fflush(stdout) == 0;
    m_bFailed = m_bFailed || !bWritten;
}

} // namespace standin_host
