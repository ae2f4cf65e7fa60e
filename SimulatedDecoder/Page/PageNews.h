#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Server/Device.h"
#include "Server/Server.h"

namespace simulated_decoder {

// What a page shows, in three parts: what the decoder is, its wall, and what hosts and faults do. Each part
// is put into words once for all pages, when one asks. All of it on the thread of the device.
class PageNews {
public:
    // A part in words; null: not told yet.
    using Text = std::shared_ptr<const std::string>;

    // All that is known, or what a page was told last.
    struct Parts {
        std::uint64_t revision = 0;
        Text about;
        Text wall;
        Text activity;
    };

    // Both outlive it.
    PageNews(const Device& device, const Server& hosts) : m_device(device), m_hosts(hosts) {}

    // To be called when something has changed.
    void Changed() { ++m_revision; }
    bool KnowsMoreThan(const Parts& told) const { return told.revision != m_revision; }

    const Parts& Now();
    // As server-sent events, what is different from what was told, which it is not any more then. Empty when
    // there is nothing.
    std::string Tell(Parts& told);
    // The wall as an SVG image.
    const std::string& Picture();

private:
    const Device& m_device;
    const Server& m_hosts;
    std::uint64_t m_revision = 1;
    Parts m_now;
    std::uint64_t m_wallRevision = 0; // of m_now.wall
    std::string m_picture;
    std::uint64_t m_pictureRevision = 0;
};

} // namespace simulated_decoder
