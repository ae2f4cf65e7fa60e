#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Server/Device.h"
#include "Server/Server.h"

namespace simulated_decoder {

// What a page shows, in three parts: the decoder, its wall, and the activity of hosts and faults. Each part
// is formatted once for all pages, when one asks. Device thread only.
class PageNews {
public:
    // A formatted part; null: not sent yet.
    using Text = std::shared_ptr<const std::string>;

    // The current state, or what a page was last sent.
    struct Parts {
        std::uint64_t revision = 0;
        Text about;
        Text wall;
        Text activity;
    };

    // Both outlive this object.
    PageNews(const Device& device, const Server& hosts) : m_device(device), m_hosts(hosts) {}

    // Call when something has changed.
    void Changed() { ++m_revision; }
    bool KnowsMoreThan(const Parts& told) const { return told.revision != m_revision; }

    const Parts& Now();
    // The differences from `told` as server-sent events; brings `told` up to date. Empty when there are none.
    std::string Tell(Parts& told);
    // The wall as an SVG image.
    const std::string& Picture();

private:
    const Device& m_device;
    const Server& m_hosts;
    std::uint64_t m_revision = 1;
    Parts m_now;
    std::uint64_t m_wallRevision = 0; // revision of m_now.wall
    std::string m_picture;
    std::uint64_t m_pictureRevision = 0;
};

} // namespace simulated_decoder
