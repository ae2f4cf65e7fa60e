#pragma once

#include <optional>
#include <string>

#include "Page/PageNews.h"

namespace simulated_decoder {

// A browser's request, as far as it matters here.
struct PageRequest {
    std::string method;
    std::string path; // without a query
    std::string body;
    std::optional<std::string> host, origin, contentType; // headers
    bool hasLength = false;                               // the body's length is announced
    bool isChunked = false;
    bool isCompressed = false;
};

struct PageAnswer {
    unsigned status = 200;
    const char* type = nullptr; // content type; null when there is no content
    std::string content;
    bool goesOn = false; // continues with server-sent events
};

// What a browser may request:
//   GET /, /page.css, /page.js  the page
//   GET /wall.svg               the picture of the wall
//   GET /events                 server-sent events `about`, `wall`, `inputs` and `activity`, each when it has
//                               changed
//   GET /state                  the same as one JSON object, once
//   GET /windows/ID             one window with all of its sub-windows
//   GET /requests/NUMBER        the texts of one of the latest requests and its reply
//   POST /faults                {"fault":"delay=500@dowallclear","on":true}: switches a fault as the command
//                               line gives it; to be switched off it needs no number
// Pages of other sites are kept out: they may not switch faults, nor reach this server under a name of their
// own.
class PageRoutes {
public:
    // All three outlive this object; `ownHost` is the address at which the decoder listens.
    PageRoutes(PageNews& news, Device& device, Server& hosts, std::string ownHost);

    // Device thread only.
    PageAnswer Answer(const PageRequest& request);

private:
    std::optional<PageAnswer> Refuse(const PageRequest& request) const;
    PageAnswer Get(const std::string& path);
    PageAnswer GetWindow(const std::string& id) const;
    PageAnswer GetRequest(const std::string& number) const;
    PageAnswer SwitchFault(const std::string& order);

    PageNews& m_news;
    Device& m_device;
    Server& m_hosts;
    std::string m_ownHost;
};

} // namespace simulated_decoder
