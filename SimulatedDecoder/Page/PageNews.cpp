#include "Page/PageNews.h"

#include <string_view>

#include <spdlog/fmt/fmt.h>

#include "Page/PageTexts.h"
#include "Picture/WallPictures.h"
#include "Picture/WallView.h"

namespace simulated_decoder {

const PageNews::Parts& PageNews::Now()
{
    if (!KnowsMoreThan(m_now)) {
        return m_now;
    }
    if (!m_now.about) {
        m_now.about = std::make_shared<const std::string>(AboutJson(m_device));
    }
    const std::uint64_t wallRevision = m_device.State().PictureRevision();
    if (!m_now.wall || m_wallRevision != wallRevision) {
        m_now.wall = std::make_shared<const std::string>(WallJson(See(m_device.State())));
        m_wallRevision = wallRevision;
    }
    m_now.activity = std::make_shared<const std::string>(ActivityJson(m_device, m_hosts.Hosts()));
    m_now.revision = m_revision;
    return m_now;
}

std::string PageNews::Tell(Parts& told)
{
    std::string events;
    const auto add = [&events](const char* name, const Text& before, const Text& now) {
        if (before != now) {
            events += fmt::format("event: {}\ndata: {}\n\n", name, *now);
        }
    };
    const Parts& now = Now();
    add("about", told.about, now.about);
    add("wall", told.wall, now.wall);
    add("activity", told.activity, now.activity);
    told = now;
    return events;
}

const std::string& PageNews::Picture()
{
    const std::uint64_t revision = m_device.State().PictureRevision();
    if (m_picture.empty() || m_pictureRevision != revision) {
        m_picture = DrawBareSvg(See(m_device.State()));
        m_pictureRevision = revision;
    }
    return m_picture;
}

} // namespace simulated_decoder
