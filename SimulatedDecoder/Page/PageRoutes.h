#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include <httplib.h>

#include "Server/Device.h"
#include "Server/DeviceFeed.h"
#include "Server/Server.h"

namespace simulated_decoder {

// What a browser may ask for:
//   GET /, /page.css, /page.js    the page
//   GET /events                   server-sent events `about`, `wall` and `activity`, each when it has changed
//   GET /state                    the same as one JSON object, once
//   GET /windows/ID               one window with all of its sub-windows
//   POST /faults                  {"fault":"delay=500@dowallclear","on":true}: switches a fault as the
//   command
//                                 line gives it; to be switched off it needs no number
// Pages of other sites are kept away: they may not switch faults, nor get here by a name of their own.
// Any number of threads may serve at the same time; device and hosts are looked at on the thread of the feed.
class PageRoutes : private httplib::Server {
public:
    // All four outlive it, and `host` is the one at which it listens.
    PageRoutes(DeviceFeed& feed, Device& device, simulated_decoder::Server& hosts, std::string host);

    // Reads one request and answers it. With /events, until the browser goes or the feed stops.
    void Serve(httplib::Stream& stream);

private:
    using Text = std::shared_ptr<const std::string>; // null: not told yet
    struct Snapshot {
        std::uint64_t revision = 0;
        Text about;
        Text wall;
        Text activity;
    };

    void AddFiles();
    void AddState();
    void AddFaults();
    HandlerResponse Refuse(const httplib::Request& request, httplib::Response& response) const;
    bool SendNews(Snapshot& told, httplib::DataSink& sink);
    // Nothing when all is coming to an end.
    std::shared_ptr<const Snapshot> Look();
    // On the thread of the feed.
    Snapshot Take();

    DeviceFeed& m_feed;
    Device& m_device;
    simulated_decoder::Server& m_hosts;
    std::string m_host;
    // The last one taken, on the thread of the feed.
    Snapshot m_last;
    std::uint64_t m_wallRevision = 0;
};

} // namespace simulated_decoder
