#include "Page/PageNews.h"

#include <utility>

#include <spdlog/fmt/fmt.h>

#include "Page/InputsText.h"
#include "Page/PageTexts.h"
#include "Picture/WallPictures.h"
#include "Picture/WallView.h"

namespace simulated_decoder {

namespace {

// A part with the same text as before is no news.
void Renew(PageNews::Text& part, std::string text)
{
    if (!part || *part != text) {
        part = std::make_shared<const std::string>(std::move(text));
    }
}

} // namespace

const PageNews::Parts& PageNews::Now()
{
    if (!KnowsMoreThan(m_now)) {
        return m_now;
    }
    if (!m_now.about) {
        Renew(m_now.about, AboutJson(m_device, m_exposed));
    }
    const DeviceState& state = m_device.State();
    if (!m_now.wall || m_wallRevision != state.PictureRevision()) {
        Renew(m_now.wall, WallJson(See(state)));
        m_wallRevision = state.PictureRevision();
    }
    Renew(m_now.inputs, InputsJson(state));
    Renew(m_now.activity, ActivityJson(m_device, m_hosts.Hosts()));
    m_now.revision = m_revision;
    return m_now;
}

PageNews::Difference PageNews::Tell(Parts& told)
{
    std::string events;
    const auto add = [&events](const char* name, const Text& before, const Text& now) {
        if (before != now) {
            events += fmt::format("event: {}\ndata: {}\n\n", name, *now);
        }
    };
    const Parts& now = Now();
    const std::size_t picture = told.wall != now.wall ? Picture().size() : 0;
    add("about", told.about, now.about);
    add("wall", told.wall, now.wall);
    add("inputs", told.inputs, now.inputs);
    add("activity", told.activity, now.activity);
    told = now;
    const std::size_t cost = events.size() + picture;
    return {std::move(events), cost};
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
