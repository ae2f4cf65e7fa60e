#include "Server/Device.h"

#include <stdexcept>
#include <utility>

#include <spdlog/spdlog.h>

#include "Requests/RequestHandlers.h"
#include "Tools/Common/TerminalText.h"

namespace simulated_decoder {

namespace {

// Far enough from the real number that no pending request has it.
constexpr std::uint32_t kWrongSeqDistance = 100000;

constexpr std::int32_t kMadeUpChannels = 64; // without a file of channels

constexpr std::string_view kGarbage = "\x01\x02 this is <no <XML &\xff\xfe> at all";

// A url from the link, made fit for one line of the log.
std::string Printable(std::string_view url)
{
    return url.empty() ? "unreadable request" : tools::OneLine(url.substr(0, 64));
}

void LogOutcome(int connection, const RequestContext& context, ErrorCode code)
{
    const std::string credentials =
        context.credentials != 0 ? fmt::format(", source accounts deciphered: {}", context.credentials) : "";
    spdlog::log(code == ErrorCode::Success ? spdlog::level::debug : spdlog::level::warn, "host {}: {}: {}{}",
                connection, Printable(context.request.Url()), Words(code), credentials);
}

std::optional<std::uint32_t> ReplySeq(const Request& request, const UrlFaults& faults)
{
    if (faults.wrongSeq && request.Seq()) {
        return *request.Seq() + kWrongSeqDistance;
    }
    return request.Seq();
}

} // namespace

Device::Device(const DeviceSettings& settings, std::shared_ptr<const DeskKeys> keys)
    : m_desk(settings.user, settings.password, std::move(keys)),
      m_channelsPath(settings.channels),
      m_state{settings.name, Wall(settings.rows, settings.columns)},
      m_pictures(settings.wallSvg, settings.wallText),
      m_log(settings.jsonLog),
      m_faults(settings.faults),
      m_madeUpChannels(settings.notifyChannels),
      m_noticeSeq(settings.notifySeq)
{
    m_state.channels =
        m_channelsPath.empty() ? InputChannels::MadeUp(kMadeUpChannels) : InputChannels::Load(m_channelsPath);
    if (!settings.sourceAccounts.empty()) {
        m_state.sources = SourceAccounts::Load(settings.sourceAccounts);
    }
    if (const std::string problem = m_pictures.Write(m_state); !problem.empty()) {
        throw std::runtime_error(problem);
    }
    for (const auto& [url, faults] : m_faults.urls) {
        if (FindRequest(url) == nullptr) {
            spdlog::warn("a fault is set for '{}', which this decoder does not serve", Printable(url));
        }
    }
}

ChannelChange Device::ReloadChannels()
{
    if (m_channelsPath.empty()) {
        return {};
    }
    try {
        const ChannelChange change = m_state.channels.Replace(InputChannels::Load(m_channelsPath));
        spdlog::info("{} channels read from {}", m_state.channels.All().size(), m_channelsPath);
        Changed();
        return change;
    } catch (const std::runtime_error& error) {
        spdlog::error("{}; the channels stay as they were", error.what());
        return {};
    }
}

void Device::TurnChannels()
{
    m_state.channels.SetOutage(!m_state.channels.IsOutage());
    Changed();
}

std::optional<std::uint32_t> Device::NextNoticeSeq()
{
    const auto seq = m_noticeSeq;
    if (m_noticeSeq) {
        ++*m_noticeSeq;
    }
    return seq;
}

std::string Device::SwitchFault(std::string_view spec, bool on)
{
    if (const auto at = spec.find('@');
        at != std::string_view::npos && FindRequest(spec.substr(at + 1)) == nullptr) {
        return "this decoder serves no such request";
    }
    std::string problem = on ? AddFault(m_faults, spec) : RemoveFault(m_faults, spec);
    if (problem.empty()) {
        spdlog::info("fault {} switched {}", spec, on ? "on" : "off");
        Changed();
    }
    return problem;
}

void Device::Changed() const
{
    if (m_changed) {
        m_changed();
    }
}

ErrorCode Device::CarryOutAndDraw(RequestContext& context)
{
    const std::uint64_t revision = m_state.PictureRevision();
    const ErrorCode code = CarryOut(context);
    if (m_state.PictureRevision() != revision) {
        if (const std::string problem = m_pictures.Write(m_state); !problem.empty()) {
            spdlog::error("{}", problem);
        }
    }
    return code;
}

Answer Device::Handle(int connection, HostSession& session, std::string_view text)
{
    Request request;
    const bool readable = request.Parse(text);
    const UrlFaults& faults = m_faults.For(request.Url());

    Message reply("response", request.Url(), ReplySeq(request, faults));
    reply.SetErrorCode(ErrorCode::Success); // must precede what the handler adds
    RequestContext context{request, reply, session, m_state};
    ErrorCode code = ErrorCode::MalformedRequest;
    if (readable) {
        code = faults.errorCode != ErrorCode::Success ? faults.errorCode : CarryOutAndDraw(context);
    }
    reply.SetErrorCode(code);

    const std::optional<ErrorCode> answered =
        faults.silent || faults.garbage ? std::nullopt : std::optional(code);
    m_log.Write(connection, context, text, answered);
    LogOutcome(connection, context, code);
    std::string sent = faults.silent ? "" : faults.garbage ? std::string(kGarbage) : reply.Text();
    m_requests.Add({std::chrono::system_clock::now(), connection, Printable(request.Url()), request.Seq(),
                    answered,
                    faults.silent    ? "no reply"
                    : faults.garbage ? "garbage"
                                     : Words(code),
                    PastMessage(text), faults.silent ? std::nullopt : std::optional<PastMessage>(sent)});
    Changed();
    return {std::move(sent), faults.delay};
}

} // namespace simulated_decoder
