#include "Page/PageRoutes.h"

#include <cstdint>
#include <string_view>
#include <system_error>
#include <utility>

#include <asio/ip/address.hpp>
#include <nlohmann/json.hpp>
#include <spdlog/fmt/fmt.h>

#include "Page/PageTexts.h"
#include "Page/WebFiles.h"
#include "Picture/WallView.h"
#include "Tools/Common/Numbers.h"

namespace simulated_decoder {

namespace {

constexpr const char* kJsonType = "application/json";
constexpr std::size_t kMaxBody = 1024;
constexpr std::string_view kWindows = "/windows/";
constexpr std::string_view kRequestPath = "/requests/";

PageAnswer Say(unsigned status, const std::string& text)
{
    return {status, "text/plain; charset=utf-8", text + "\n"};
}

// The host of "HOST" or "HOST:PORT", where HOST is a name or an address, IPv6 in brackets.
std::string_view HostName(std::string_view host)
{
    if (host.starts_with('[')) {
        return host.substr(1, host.find(']') - 1);
    }
    return host.substr(0, host.find(':'));
}

// Any other name may belong to a foreign page that resolves it to this address.
bool IsOwnName(std::string_view name, std::string_view ownHost)
{
    std::error_code error;
    asio::ip::make_address(std::string(name), error);
    return !error || name == "localhost" || name == ownHost;
}

} // namespace

PageRoutes::PageRoutes(PageNews& news, Device& device, Server& hosts, std::string ownHost)
    : m_news(news), m_device(device), m_hosts(hosts), m_ownHost(std::move(ownHost))
{
}

PageAnswer PageRoutes::Answer(const PageRequest& request)
{
    if (auto refusal = Refuse(request)) {
        return *std::move(refusal);
    }
    if (request.method != "POST") {
        return Get(request.path);
    }
    return request.path == "/faults" ? SwitchFault(request.body) : Say(404, "no such page");
}

std::optional<PageAnswer> PageRoutes::Refuse(const PageRequest& request) const
{
    if (!request.host || !IsOwnName(HostName(*request.host), m_ownHost)) {
        return Say(403, "this page is not known by that name");
    }
    if (request.method == "GET" || request.method == "HEAD") {
        return std::nullopt;
    }
    if (request.method != "POST") {
        return Say(405, "only GET, HEAD and POST");
    }
    if (request.origin && *request.origin != "http://" + *request.host) {
        return Say(403, "not from other sites");
    }
    if (!request.hasLength || request.isChunked) {
        return Say(411, "the length of the content is missing");
    }
    if (request.contentType != kJsonType || request.isCompressed) {
        return Say(415, "only plain JSON");
    }
    if (request.body.size() > kMaxBody) {
        return Say(413, fmt::format("at most {} bytes", kMaxBody));
    }
    return std::nullopt;
}

PageAnswer PageRoutes::Get(const std::string& path)
{
    if (path == "/") {
        return {200, "text/html; charset=utf-8", std::string(kPageHtml)};
    }
    if (path == "/page.css") {
        return {200, "text/css; charset=utf-8", std::string(kPageCss)};
    }
    if (path == "/page.js") {
        return {200, "text/javascript; charset=utf-8", std::string(kPageJs)};
    }
    if (path == "/wall.svg") {
        return {200, "image/svg+xml", m_news.Picture()};
    }
    if (path == "/events") {
        return {200, "text/event-stream", "", true};
    }
    if (path == "/state") {
        const PageNews::Parts& now = m_news.Now();
        return {200, kJsonType,
                fmt::format("{{\"about\":{},\"wall\":{},\"inputs\":{},\"activity\":{}}}\n", *now.about,
                            *now.wall, *now.inputs, *now.activity)};
    }
    if (path.starts_with(kWindows)) {
        return GetWindow(path.substr(kWindows.size()));
    }
    if (path.starts_with(kRequestPath)) {
        return GetRequest(path.substr(kRequestPath.size()));
    }
    return Say(404, "no such page");
}

PageAnswer PageRoutes::GetWindow(const std::string& id) const
{
    const auto number = tools::ParseDecimal<std::uint32_t>(id);
    const auto window = number ? SeeWindow(m_device.State(), *number) : std::nullopt;
    return window ? PageAnswer{200, kJsonType, WindowJson(*window) + "\n"} : Say(404, "no such window");
}

PageAnswer PageRoutes::GetRequest(const std::string& number) const
{
    const PastRequest* past =
        m_device.Requests().Find(tools::ParseDecimal<std::uint64_t>(number).value_or(0));
    return past != nullptr ? PageAnswer{200, kJsonType, RequestJson(*past) + "\n"}
                           : Say(404, "no such request is kept");
}

PageAnswer PageRoutes::SwitchFault(const std::string& order)
{
    const auto json = nlohmann::json::parse(order, nullptr, false);
    if (!json.is_object() || !json.contains("fault") || !json["fault"].is_string() || !json.contains("on") ||
        !json["on"].is_boolean()) {
        return Say(400, R"(not of the form {"fault":"NAME=NUMBER@URL","on":true})");
    }
    const std::string problem = m_hosts.SwitchFault(json["fault"].get<std::string>(), json["on"].get<bool>());
    return problem.empty() ? PageAnswer{204, nullptr, ""} : Say(400, problem);
}

} // namespace simulated_decoder
