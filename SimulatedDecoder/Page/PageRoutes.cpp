#include "Page/PageRoutes.h"

#include <optional>
#include <string_view>
#include <utility>

#include <asio/ip/address.hpp>
#include <nlohmann/json.hpp>

#include "Link/Message.h"
#include "Page/PageTexts.h"
#include "Page/WebFiles.h"

namespace simulated_decoder {

namespace {

using HttpRequest = httplib::Request;
using HttpResponse = httplib::Response;
using Json = nlohmann::json;

constexpr const char* kJsonType = "application/json";
constexpr const char* kTextType = "text/plain; charset=utf-8";
constexpr std::size_t kMaxBody = 1024;

// More often than this a page is not told about changes.
constexpr std::chrono::milliseconds kPace{100};
// After that long without news it is told that there are none: so it is found out when a browser has gone.
constexpr std::chrono::milliseconds kSilence{10000};

void Say(HttpResponse& response, int status, const std::string& text)
{
    response.status = status;
    response.set_content(text + "\n", kTextType);
}

// The host of "HOST" or "HOST:PORT", where HOST is a name or an address, an IPv6 one in brackets.
std::string_view HostName(std::string_view host)
{
    if (host.starts_with('[')) {
        return host.substr(1, host.find(']') - 1);
    }
    return host.substr(0, host.find(':'));
}

// Behind any other name there may be somebody else's page, which has that name lead here.
bool IsOwnName(std::string_view name, std::string_view ownHost)
{
    std::error_code error;
    asio::ip::make_address(std::string(name), error);
    return !error || name == "localhost" || name == ownHost;
}

// Appends one server-sent event; `data` is a single line.
void AddEvent(std::string& text, const char* name, std::string_view data)
{
    text.append("event: ").append(name).append("\ndata: ").append(data).append("\n\n");
}

} // namespace

PageRoutes::PageRoutes(DeviceFeed& feed, Device& device, simulated_decoder::Server& hosts, std::string host)
    : m_feed(feed), m_device(device), m_hosts(hosts), m_host(std::move(host))
{
    // The library takes a server without a socket for one that is shutting down. The sockets are not its own
    // here, so any number will do.
    svr_sock_ = 0;
    set_payload_max_length(kMaxBody);
    set_default_headers({{"Cache-Control", "no-store"},
                         {"Content-Security-Policy",
                          "default-src 'none'; script-src 'self'; style-src 'self'; connect-src 'self'; "
                          "img-src data:; base-uri 'none'; form-action 'none'; frame-ancestors 'none'"},
                         {"Cross-Origin-Resource-Policy", "same-origin"},
                         {"Referrer-Policy", "no-referrer"},
                         {"X-Content-Type-Options", "nosniff"}});
    set_pre_routing_handler(
        [this](const HttpRequest& request, HttpResponse& response) { return Refuse(request, response); });
    set_exception_handler([](const HttpRequest&, HttpResponse& response, const std::exception_ptr&) {
        Say(response, 500, "internal failure");
    });
    AddFiles();
    AddState();
    AddFaults();
}

void PageRoutes::Serve(httplib::Stream& stream)
{
    bool closed = false;
    process_request(stream, true, closed, nullptr);
}

// Before anything of the body is read.
auto PageRoutes::Refuse(const HttpRequest& request, HttpResponse& response) const -> HandlerResponse
{
    const std::string host = request.get_header_value("Host");
    if (!IsOwnName(HostName(host), m_host)) {
        Say(response, 403, "this page is not known by that name");
        return HandlerResponse::Handled;
    }
    if (request.ranges.size() > 1) {
        response.status = 416; // without a text, which would be cut into these ranges
        return HandlerResponse::Handled;
    }
    if (request.method == "GET" || request.method == "HEAD") {
        return HandlerResponse::Unhandled;
    }
    if (request.method != "POST") {
        Say(response, 405, "only GET, HEAD and POST");
    } else if (request.has_header("Origin") && request.get_header_value("Origin") != "http://" + host) {
        Say(response, 403, "not from other sites");
    } else if (!request.has_header("Content-Length") || request.has_header("Transfer-Encoding")) {
        Say(response, 411, "the length of the content is missing");
    } else if (request.get_header_value("Content-Type") != kJsonType ||
               request.has_header("Content-Encoding")) {
        Say(response, 415, "only plain JSON");
    } else {
        return HandlerResponse::Unhandled;
    }
    return HandlerResponse::Handled;
}

void PageRoutes::AddFiles()
{
    const struct {
        const char* path;
        std::string_view content;
        const char* type;
    } files[] = {{"/", kPageHtml, "text/html; charset=utf-8"},
                 {"/page.css", kPageCss, "text/css; charset=utf-8"},
                 {"/page.js", kPageJs, "text/javascript; charset=utf-8"}};
    for (const auto& file : files) {
        Get(file.path, [file](const HttpRequest&, HttpResponse& response) {
            response.set_content(file.content.data(), file.content.size(), file.type);
        });
    }
}

void PageRoutes::AddState()
{
    Get("/state", [this](const HttpRequest&, HttpResponse& response) {
        if (const auto snapshot = Look()) {
            response.set_content("{\"about\":" + *snapshot->about + ",\"wall\":" + *snapshot->wall +
                                     ",\"activity\":" + *snapshot->activity + "}\n",
                                 kJsonType);
        } else {
            Say(response, 503, "the decoder stops");
        }
    });
    Get("/events", [this](const HttpRequest&, HttpResponse& response) {
        const auto told = std::make_shared<Snapshot>();
        response.set_content_provider(
            "text/event-stream",
            [this, told](std::size_t, httplib::DataSink& sink) { return SendNews(*told, sink); });
    });
    Get(R"(/windows/(\d{1,10}))", [this](const HttpRequest& request, HttpResponse& response) {
        const auto id = tools::ParseDecimal<std::uint32_t>(request.matches[1].str());
        const auto window = std::make_shared<std::optional<std::string>>();
        if (id) {
            m_feed.Run([this, id, window] {
                if (const auto view = SeeWindow(m_device.State(), *id)) {
                    *window = WindowJson(*view);
                }
            });
        }
        if (*window) {
            response.set_content(**window + "\n", kJsonType);
        } else {
            Say(response, 404, "no such window");
        }
    });
}

void PageRoutes::AddFaults()
{
    Post("/faults", [this](const HttpRequest& request, HttpResponse& response) {
        const Json order = Json::parse(request.body, nullptr, false);
        if (!order.is_object() || !order.contains("fault") || !order["fault"].is_string() ||
            !order.contains("on") || !order["on"].is_boolean()) {
            Say(response, 400, R"(not of the form {"fault":"NAME=NUMBER@URL","on":true})");
            return;
        }
        const auto problem = std::make_shared<std::string>("the decoder stops");
        m_feed.Run([this, problem, spec = order["fault"].get<std::string>(), on = order["on"].get<bool>()] {
            *problem = m_hosts.SwitchFault(spec, on);
        });
        if (problem->empty()) {
            response.status = 204;
        } else {
            Say(response, 400, *problem);
        }
    });
}

bool PageRoutes::SendNews(Snapshot& told, httplib::DataSink& sink)
{
    const bool news = m_feed.WaitForChange(told.revision, kSilence);
    const auto next = news ? Look() : nullptr;
    if (m_feed.IsStopped()) {
        sink.done();
        return true;
    }
    std::string text = next ? "" : ": no news\n\n";
    if (next) {
        text = told.about ? "" : "retry: 1000\n\n";
        const auto add = [&](const char* name, const Text& before, const Text& now) {
            if (before != now) {
                AddEvent(text, name, *now);
            }
        };
        add("about", told.about, next->about);
        add("wall", told.wall, next->wall);
        add("activity", told.activity, next->activity);
        told = *next;
    }
    if (!sink.write(text.data(), text.size())) {
        return false;
    }
    m_feed.Pause(kPace);
    return true;
}

std::shared_ptr<const PageRoutes::Snapshot> PageRoutes::Look()
{
    const auto snapshot = std::make_shared<Snapshot>();
    return m_feed.Run([this, snapshot] { *snapshot = Take(); }) ? snapshot : nullptr;
}

PageRoutes::Snapshot PageRoutes::Take()
{
    const std::uint64_t revision = m_feed.Revision();
    if (revision == m_last.revision) {
        return m_last;
    }
    if (!m_last.about) {
        m_last.about = std::make_shared<const std::string>(AboutJson(m_device));
    }
    const std::uint64_t wallRevision = m_device.State().PictureRevision();
    if (!m_last.wall || wallRevision != m_wallRevision) {
        m_last.wall = std::make_shared<const std::string>(WallJson(See(m_device.State())));
        m_wallRevision = wallRevision;
    }
    m_last.activity = std::make_shared<const std::string>(ActivityJson(m_device, m_hosts.Hosts()));
    m_last.revision = revision;
    return m_last;
}

} // namespace simulated_decoder
