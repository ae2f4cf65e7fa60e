#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "Server/Device.h"
#include "Server/Server.h"

namespace simulated_decoder {

// What a page shows, in four parts: the decoder, its wall, its input channels, and the activity of hosts and
// faults. Each part is formatted once for all pages, when one asks. Device thread only.
class PageNews {
public:
    // A formatted part; null: not sent yet.
    using Text = std::shared_ptr<const std::string>;

    // The current state, or what a page was last sent.
    struct Parts {
        std::uint64_t revision = 0;
        Text about;
        Text wall;
        Text inputs;
        Text activity;
    };

    // Device and hosts outlive this object; `exposed`: the page listens on more than loopback.
    PageNews(const Device& device, const Server& hosts, bool exposed)
        : m_device(device), m_hosts(hosts), m_exposed(exposed)
    {
    }

    // Call when something has changed.
    void Changed() { ++m_revision; }
    bool KnowsMoreThan(const Parts& told) const { return told.revision != m_revision; }

    const Parts& Now();
    struct Difference {
        std::string events; // server-sent events; empty when there is none
        std::size_t cost;   // in bytes, with the picture that a page then requests
    };
    // What `told` lacks; brings it up to date.
    Difference Tell(Parts& told);
    // The wall as an SVG image.
    const std::string& Picture();

private:
    const Device& m_device;
    const Server& m_hosts;
    bool m_exposed;
    std::uint64_t m_revision = 1;
    Parts m_now;
    std::uint64_t m_wallRevision = 0; // revision of m_now.wall
    std::string m_picture;
    std::uint64_t m_pictureRevision = 0;
};

} // namespace simulated_decoder
