#include "Device.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include <spdlog/spdlog.h>

#include "RequestHandlers.h"

namespace simulated_decoder {

namespace {

// Far enough from the real number that no request in flight has it.
constexpr std::uint32_t kWrongSeqDistance = 100000;

constexpr std::string_view kGarbage = "\x01\x02 this is <no <XML &\xff\xfe> at all";

// A url from the link, fit for one line of the log.
std::string Printable(std::string_view url)
{
    std::string text(url.substr(0, 64));
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
    return text.empty() ? "unreadable request" : text;
}

void LogOutcome(int connection, const Request& request, ErrorCode code)
{
    spdlog::log(code == ErrorCode::Success ? spdlog::level::debug : spdlog::level::warn, "host {}: {}: {}",
                connection, Printable(request.Url()), Words(code));
}

std::optional<std::uint32_t> ReplySeq(const Request& request, const UrlFaults& faults)
{
    if (faults.wrongSeq && request.Seq()) {
        return *request.Seq() + kWrongSeqDistance;
    }
    return request.Seq();
}

} // namespace

Device::Device(const Options& options, std::shared_ptr<const DeskKeys> keys)
    : m_desk(options.user, options.password, std::move(keys)),
      m_wall(options.rows, options.columns),
      m_pictures(options.wallSvg, options.wallText),
      m_log(options.jsonLog),
      m_faults(options.faults),
      m_channels(options.channels)
{
    if (const std::string problem = m_pictures.Write(m_wall); !problem.empty()) {
        throw std::runtime_error(problem);
    }
    for (const auto& [url, faults] : m_faults.urls) {
        if (FindRequest(url) == nullptr) {
            spdlog::warn("a fault is set for '{}', which this decoder does not serve", Printable(url));
        }
    }
}

ErrorCode Device::CarryOutAndDraw(const Request& request, Message& reply, HostSession& session)
{
    const std::uint64_t revision = m_wall.Revision();
    RequestContext context{request, reply, session, m_wall};
    const ErrorCode code = CarryOut(context);
    if (m_wall.Revision() != revision) {
        if (const std::string problem = m_pictures.Write(m_wall); !problem.empty()) {
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
    reply.SetErrorCode(ErrorCode::Success); // its place is before what the handler adds
    ErrorCode code = ErrorCode::MalformedRequest;
    if (readable) {
        code = faults.errorCode ? *faults.errorCode : CarryOutAndDraw(request, reply, session);
    }
    reply.SetErrorCode(code);

    const bool codeIsSent = !faults.silent && !faults.garbage;
    m_log.Write(connection, request, text, codeIsSent ? std::optional(code) : std::nullopt);
    LogOutcome(connection, request, code);
    if (faults.silent) {
        return {};
    }
    return {faults.garbage ? std::string(kGarbage) : reply.Text(), faults.delay};
}

} // namespace simulated_decoder
