// The page of the simulated decoder from a browser's side: requests of HTTP in, answers and events out.

#include <memory>
#include <thread>

#include <asio.hpp>
#include <gtest/gtest.h>
#include <spdlog/fmt/fmt.h>

#include "Page/PageServer.h"

namespace simulated_decoder {
namespace {

using asio::ip::tcp;

class Page : public testing::Test {
protected:
    Page()
    {
        settings.password = "secret";
        device = std::make_unique<Device>(settings);
        server = std::make_unique<Server>(context, *device, capture, "127.0.0.1", 0);
        page =
            std::make_unique<PageServer>(context, *device, *server, "127.0.0.1", 0, std::chrono::seconds(2));
        host = page->Where();
        thread = std::thread([this] { context.run(); });
    }
    ~Page() override
    {
        context.stop();
        thread.join();
        page.reset();
    }

    // What a request is answered with is read from this.
    tcp::iostream Send(const std::string& request) const
    {
        const auto colon = host.rfind(':');
        tcp::iostream browser(host.substr(0, colon), host.substr(colon + 1));
        browser.expires_after(std::chrono::seconds(20)); // reading fails then
        browser << request << std::flush;
        return browser;
    }
    static std::string Rest(tcp::iostream& browser) { return {std::istreambuf_iterator<char>(browser), {}}; }
    // The whole answer.
    std::string Ask(const std::string& request) const
    {
        auto browser = Send(request);
        return Rest(browser);
    }
    std::string Post(const std::string& headers, const std::string& body) const
    {
        return Ask(fmt::format("POST /faults HTTP/1.1\r\n{}Content-Length: {}\r\n\r\n{}", headers,
                               body.size(), body));
    }
    // Runs it on the device's thread.
    template <typename Function>
    auto OnDevice(Function function)
    {
        return asio::post(context, asio::use_future(function)).get();
    }

    asio::io_context context{1};
    DeviceSettings settings;
    std::unique_ptr<Device> device;
    PcapFile capture{""};
    std::unique_ptr<Server> server;
    std::unique_ptr<PageServer> page;
    std::string host;
    std::thread thread;
};

TEST_F(Page, RefusesWhatNoBrowserOfItsOwnAsks)
{
    const std::string own = "Host: " + host + "\r\nContent-Type: application/json\r\n";
    const std::string order = R"({"fault":"chunk=5","on":true})";
    const auto lines = [](int count) {
        std::string text;
        for (int i = 0; i < count; ++i) {
            text += "X: " + std::string(1024, 'x') + "\r\n";
        }
        return text;
    };
    EXPECT_EQ(Ask("GET / HTTP/1.1\r\n" + own + lines(70) + "\r\n"), "");
    EXPECT_EQ(Ask("what is this\r\n\r\n"), "");
    EXPECT_EQ(Post(own, std::string(5000, ' ')), "");
    const std::pair<std::string, int> cases[] = {
        {Ask("GET / HTTP/1.1\r\nHost: wall.example\r\n\r\n"), 403}, // a name that was made to lead here
        {Ask("GET / HTTP/1.1\r\n\r\n"), 403},
        {Ask("GET /page.html HTTP/1.1\r\n" + own + "\r\n"), 404},
        {Ask("GET /windows/1 HTTP/1.1\r\n" + own + "\r\n"), 404},
        {Ask("GET /windows/99999999999 HTTP/1.1\r\n" + own + "\r\n"), 404},
        {Ask("GET / HTTP/1.1\r\nRange: bytes=0-1,2-3\r\n" + own + "\r\n"), 200}, // all of it, once
        {Ask("GET / HTTP/1.1\r\nUpgrade: h2c\r\nConnection: Upgrade\r\n" + own + "\r\n"), 501},
        {Ask("GET / HTTP/1.1\r\n" + own + lines(60) + "\r\n"), 200},
        {Ask("DELETE /faults HTTP/1.1\r\n" + own + "\r\n"), 405},
        {Ask("POST /faults HTTP/1.1\r\n" + own + "\r\n"), 411},
        {Ask("POST /faults HTTP/1.1\r\n" + own + "Transfer-Encoding: chunked\r\n\r\n0\r\n\r\n"), 411},
        {Post(own, std::string(2000, ' ')), 413},
        {Post(own + "Origin: http://wall.example\r\n", order), 403},
        {Post(own + "Origin: null\r\n", order), 403},
        {Post("Host: " + host + "\r\nContent-Type: text/plain\r\n", order),
         415}, // what forms of other sites send
        {Post(own, "{"), 400},
        {Post(own, R"({"fault":5,"on":true})"), 400},
        {Post(own, R"({"fault":"chunk=0","on":true})"), 400},
        {Post(own, R"({"fault":"silent@nosuchrequest","on":true})"), 400},
        {Post(own, R"({"fault":"chunk@dologin","on":false})"), 400},
    };
    for (const auto& [answer, status] : cases) {
        EXPECT_TRUE(answer.starts_with(fmt::format("HTTP/1.1 {} ", status))) << status << '\n' << answer;
    }
    EXPECT_TRUE(OnDevice([this] { return ListFaults(device->ActiveFaults()).empty(); }));
    EXPECT_TRUE(Post(own + "Origin: http://" + host + "\r\n", order).starts_with("HTTP/1.1 204 "));
    EXPECT_EQ(OnDevice([this] { return device->ActiveFaults().chunk; }), 5U);
    EXPECT_TRUE(Post(own, R"({"fault":"chunk","on":false})").starts_with("HTTP/1.1 204 "));
    EXPECT_EQ(OnDevice([this] { return device->ActiveFaults().chunk; }), 0U);
}

TEST_F(Page, SlowBrowsersHoldUpNeitherTheDecoderNorOthersForLong)
{
    std::vector<tcp::iostream> slow;
    auto trickling = Send("GET / HTTP/1.1\r\n");
    for (int i = 1; i < 32; ++i) {
        slow.push_back(Send("GET / HTTP/1.1\r\n"));
    }
    const std::string request = "GET / HTTP/1.1\r\nHost: localhost\r\n\r\n";
    EXPECT_EQ(Ask(request), ""); // turned away
    EXPECT_EQ(OnDevice([] { return 5; }), 5);
    int pieces = 0; // which gain it no time
    do {
        trickling.clear();
        trickling.expires_after(std::chrono::milliseconds(100));
        trickling << "X: x\r\n" << std::flush;
    } while (Rest(trickling).empty() && trickling.error() == asio::error::timed_out && ++pieces < 100);
    EXPECT_LT(pieces, 50);
    for (tcp::iostream& browser : slow) {
        EXPECT_EQ(Rest(browser), "");
        EXPECT_NE(browser.error(), asio::error::timed_out); // by the test
    }
    EXPECT_TRUE(Ask(request).starts_with("HTTP/1.1 200 "));
}

TEST_F(Page, TellsTheLatestRequestsAndRepliesWithoutCredentials)
{
    HostSession session(device->Desk());
    const auto handle = [&](const std::string& text) {
        OnDevice([&] { return device->Handle(1, session, text).payload; });
    };
    const auto ask = [this](int number) {
        return Ask(fmt::format("GET /requests/{} HTTP/1.1\r\nHost: localhost\r\n\r\n", number));
    };
    const std::string enciphered(172, 'D');
    handle("<account>AB</account><authentication\n>CD</authentication><token>EF</token><user>" + enciphered +
           "</user><pwd></pwd><users>GH</users>");
    EXPECT_NE(ask(1).find(R"({"request":{"text":"<account>(hidden)</account><authentication>(hidden))"
                          R"(</authentication><token>(hidden)</token><user>(hidden)</user><pwd></pwd>)"
                          R"(<users>GH</users>","length":287,"kept":287},"reply":{"text":"<?xml )"),
              std::string::npos)
        << ask(1);
    handle("<pwd>" + std::string(20000, 'x')); // cut off within the secret
    EXPECT_NE(ask(2).find(R"-("<pwd>(hidden)","length":20005,"kept":16384})-"), std::string::npos) << ask(2);
    EXPECT_EQ(OnDevice([this] { return device->SwitchFault("silent@dowallclear", true); }), "");
    handle("<td_command><td_header><url>dowallclear</url></td_header></td_command>");
    EXPECT_NE(ask(3).find(R"("reply":null)"), std::string::npos) << ask(3);
    for (int i = 0; i < 48; ++i) {
        handle(std::string(20000, 'x'));
    }
    EXPECT_TRUE(ask(1).starts_with("HTTP/1.1 404 ")); // 50 are kept
    EXPECT_TRUE(ask(2).starts_with("HTTP/1.1 200 "));
}

} // namespace
} // namespace simulated_decoder
