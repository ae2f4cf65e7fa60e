#include "Page/PageServer.h"

#include <algorithm>
#include <map>
#include <optional>
#include <system_error>
#include <utility>

#include <asio/post.hpp>
#include <asio/steady_timer.hpp>
#include <http_parser.h>
#include <restinio/http_server.hpp>
#include <restinio/message_builders.hpp>
#include <restinio/settings.hpp>
#include <restinio/traits.hpp>
#include <spdlog/spdlog.h>

#include "Page/PageNews.h"
#include "Page/PageRoutes.h"
#include "Server/Acceptor.h"

namespace simulated_decoder {

namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;
using ConnectionId = restinio::connection_id_t;
using Events = restinio::response_builder_t<restinio::chunked_output_t>;

constexpr std::size_t kMaxVisitors = 32;
constexpr std::uint32_t kMaxHeaders = 65536; // bytes, all headers together
constexpr std::size_t kMaxFields = 128;
constexpr std::size_t kMaxBodyRead = 4096; // longer bodies are not even refused
constexpr milliseconds kWriteTime{30000};
constexpr milliseconds kTimeCheck{250}; // how often deadlines are checked

// Shortest time between two updates of a page; large ones come less often, so that no page costs more than
// this many bytes a second, its picture included.
constexpr milliseconds kPace{100};
constexpr std::size_t kBytesPerMillisecond = 1000;
// After this long without news a page is told that there is none, to find out whether its browser is gone.
constexpr milliseconds kSilence{10000};

constexpr std::pair<const char*, const char*> kHeaders[] = {
    {"Cache-Control", "no-store"},
    {"Content-Security-Policy",
     "default-src 'none'; script-src 'self'; style-src 'self'; connect-src 'self'; img-src data:; "
     "base-uri 'none'; form-action 'none'; frame-ancestors 'none'"},
    {"Cross-Origin-Resource-Policy", "same-origin"},
    {"Referrer-Policy", "no-referrer"},
    {"X-Content-Type-Options", "nosniff"},
};

// NOLINTBEGIN(readability-identifier-naming): the library's names

// Counts the connections and refuses excess ones.
class Visitors {
public:
    restinio::ip_blocker::inspection_result_t inspect(const restinio::ip_blocker::incoming_info_t&) noexcept
    {
        if (m_count < kMaxVisitors) {
            return restinio::ip_blocker::allow();
        }
        spdlog::warn("a browser turned away: {} connections of browsers are open", kMaxVisitors);
        return restinio::ip_blocker::deny();
    }

    void state_changed(const restinio::connection_state::notice_t& notice) noexcept
    {
        if (restinio::holds_alternative<restinio::connection_state::accepted_t>(notice.cause())) {
            ++m_count;
        } else if (restinio::holds_alternative<restinio::connection_state::closed_t>(notice.cause())) {
            --m_count;
        }
    }

private:
    std::size_t m_count = 0;
};

struct Traits : restinio::default_single_thread_traits_t {
    using ip_blocker_t = Visitors;
    using connection_state_listener_t = Visitors;
};

// NOLINTEND(readability-identifier-naming)

PageRequest Read(const restinio::request_t& request)
{
    const restinio::http_request_header_t& header = request.header();
    const auto field = [&header](restinio::http_field_t name) {
        return header.has_field(name) ? std::optional(header.get_field(name)) : std::nullopt;
    };
    PageRequest read;
    read.method = header.method().c_str();
    read.path = std::string(header.path());
    read.body = request.body();
    read.host = field(restinio::http_field::host);
    read.origin = field(restinio::http_field::origin);
    read.contentType = field(restinio::http_field::content_type);
    read.hasLength = header.has_field("Content-Length");
    read.isChunked = header.has_field(restinio::http_field::transfer_encoding);
    read.isCompressed = header.has_field(restinio::http_field::content_encoding);
    return read;
}

} // namespace

class PageServer::Impl : public std::enable_shared_from_this<Impl> {
public:
    Impl(asio::io_context& context, Device& device, Server& hosts, const std::string& host,
         std::uint16_t port, milliseconds requestTime)
        : m_context(context),
          m_device(device),
          m_endpoint(Resolve(context, host, port)),
          m_news(device, hosts, !m_endpoint.address().is_loopback()),
          m_routes(m_news, device, hosts, host),
          m_timer(context),
          m_server(restinio::external_io_context(context), MakeSettings(requestTime))
    {
        http_parser_set_max_header_size(kMaxHeaders);
    }
    ~Impl() { m_device.Watch(nullptr); }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

    // Throws std::system_error.
    void Start()
    {
        m_server.open_sync();
        m_device.Watch([this] {
            m_news.Changed();
            TellSoon();
        });
        TellAt(Clock::now() + kSilence);
    }
    const std::string& Where() const { return m_where; }

private:
    // A page that receives updates.
    struct Follower {
        Events events;
        PageNews::Parts told;
        bool isTaking = false; // it has not yet taken the last update
    };

    restinio::server_settings_t<Traits> MakeSettings(milliseconds requestTime)
    {
        const auto visitors = std::make_shared<Visitors>();
        restinio::server_settings_t<Traits> settings;
        settings.address(m_endpoint.address())
            .protocol(m_endpoint.protocol())
            .port(m_endpoint.port())
            .acceptor_post_bind_hook(
                [this](asio::ip::tcp::acceptor& acceptor) { m_where = Text(acceptor.local_endpoint()); })
            .socket_options_setter([](auto& options) { options.set_option(asio::ip::tcp::no_delay(true)); })
            .ip_blocker(visitors)
            .connection_state_listener(visitors)
            .timer_manager(kTimeCheck)
            .read_next_http_message_timelimit(requestTime)
            .handle_request_timeout(3 * kSilence)
            .write_http_response_timelimit(kWriteTime)
            .incoming_http_msg_limits(restinio::incoming_http_msg_limits_t{}
                                          .max_field_count(kMaxFields)
                                          .max_body_size(kMaxBodyRead))
            .request_handler([this](const restinio::request_handle_t& request) { return Serve(*request); });
        return settings;
    }

    restinio::request_handling_status_t Serve(restinio::request_t& request)
    {
        // Deadlines are not checked on a connection about to be upgraded, so little may be sent there.
        PageAnswer answer = request.header().has_field(restinio::http_field::upgrade)
                                ? PageAnswer{501, nullptr, ""}
                                : m_routes.Answer(Read(request));
        const restinio::http_status_line_t status{
            restinio::http_status_code_t(static_cast<std::uint16_t>(answer.status)),
            http_status_str(static_cast<http_status>(answer.status))};
        if (answer.goesOn && request.header().method() == restinio::http_method_get()) {
            Follow(request, status, answer.type);
            return restinio::request_accepted();
        }
        auto response = request.create_response<restinio::user_controlled_output_t>(status);
        AddHeaders(response, answer.type);
        response.set_content_length(answer.content.size());
        if (request.header().method() != restinio::http_method_head()) {
            response.set_body(std::move(answer.content));
        }
        return response.done();
    }

    template <typename Response>
    static void AddHeaders(Response& response, const char* type)
    {
        for (const auto& [name, value] : kHeaders) {
            response.append_header(name, value);
        }
        if (type != nullptr) {
            response.append_header(restinio::http_field::content_type, type);
        }
        response.connection_close();
    }

    void Follow(restinio::request_t& request, const restinio::http_status_line_t& status, const char* type)
    {
        const ConnectionId id = request.connection_id();
        Follower& follower =
            m_followers.emplace(id, Follower{request.create_response<restinio::chunked_output_t>(status), {}})
                .first->second;
        AddHeaders(follower.events, type);
        follower.events.append_chunk(std::string("retry: 1000\n\n"));
        Tell(id, follower);
    }

    // A slow browser gets the newest state when there is room, not a queue of old ones. Returns what it
    // costs.
    std::size_t Tell(ConnectionId id, Follower& follower)
    {
        if (follower.isTaking) {
            return 0;
        }
        auto [events, cost] = m_news.Tell(follower.told);
        follower.isTaking = true;
        follower.events.append_chunk(events.empty() ? std::string(": no news\n\n") : std::move(events));
        follower.events.flush([weak = weak_from_this(), id](const std::error_code& error) {
            if (const auto self = weak.lock()) {
                asio::post(self->m_context, [weak, id, error] {
                    if (const auto still = weak.lock()) {
                        still->Taken(id, error);
                    }
                });
            }
        });
        return cost;
    }

    void Taken(ConnectionId id, const std::error_code& error)
    {
        const auto found = m_followers.find(id);
        if (found == m_followers.end()) {
            return;
        }
        if (error) {
            m_followers.erase(found);
            return;
        }
        found->second.isTaking = false;
        if (m_news.KnowsMoreThan(found->second.told)) {
            TellSoon();
        }
    }

    void TellSoon()
    {
        if (!m_toldSoon) {
            m_toldSoon = true;
            TellAt(m_notBefore);
        }
    }

    void TellAt(Clock::time_point time)
    {
        m_timer.expires_at(time);
        m_timer.async_wait([weak = weak_from_this()](const std::error_code& cancelled) {
            const auto self = weak.lock();
            if (!cancelled && self) {
                self->TellAll();
            }
        });
    }

    void TellAll()
    {
        m_toldSoon = false;
        std::size_t cost = 0; // of the page that is behind most
        for (auto& [id, follower] : m_followers) {
            cost = std::max(cost, Tell(id, follower));
        }
        const auto now = Clock::now();
        m_notBefore = now + std::max(kPace, milliseconds(cost / kBytesPerMillisecond));
        TellAt(now + kSilence);
    }

    asio::io_context& m_context;
    Device& m_device;
    asio::ip::tcp::endpoint m_endpoint;
    PageNews m_news;
    PageRoutes m_routes;
    std::string m_where;
    asio::steady_timer m_timer; // for the next update of all pages
    bool m_toldSoon = false;
    Clock::time_point m_notBefore; // the next update
    restinio::http_server_t<Traits> m_server;
    std::map<ConnectionId, Follower> m_followers;
};

PageServer::PageServer(asio::io_context& context, Device& device, Server& hosts, const std::string& host,
                       std::uint16_t port, milliseconds requestTime)
{
    try {
        m_impl = std::make_shared<Impl>(context, device, hosts, host, port, requestTime);
        m_impl->Start();
    } catch (const std::system_error& error) {
        throw ListenError(host, port, error);
    }
}

PageServer::~PageServer() = default;

const std::string& PageServer::Where() const { return m_impl->Where(); }

} // namespace simulated_decoder
