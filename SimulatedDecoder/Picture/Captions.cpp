#include "Picture/Captions.h"

#include <algorithm>

#include <spdlog/fmt/fmt.h>

namespace simulated_decoder {

namespace {

constexpr std::size_t kMaxCells = 2048;

Caption MediaCaption(const SubWindow& subWindow)
{
    const Media& media = subWindow.media.front();
    Caption caption{fmt::format("{}:{}", media.address, media.port), ""};
    if (subWindow.control) {
        caption.detail += fmt::format("control {}={}, ", subWindow.control->type, subWindow.control->value);
    }
    if (subWindow.media.size() > 1) {
        caption.detail += fmt::format("+{} more, ", subWindow.media.size() - 1);
    }
    caption.detail += fmt::format("stream {}", media.streamType);
    if (!media.channel.empty()) {
        caption.detail += fmt::format(", ch {}", media.channel);
    }
    return caption;
}

Caption GroupCaption(std::int32_t id, const ChannelGroups& groups)
{
    Caption caption{fmt::format("group {}", id), ""};
    if (const auto found = groups.All().find(id); found != groups.All().end()) {
        caption.detail =
            fmt::format("ch {}, every {}", fmt::join(found->second.channels, ","), found->second.interval);
    }
    return caption;
}

bool Covers(const Rect& upper, const Rect& lower)
{
    return upper.x <= lower.x && upper.y <= lower.y && upper.x + upper.width >= lower.x + lower.width &&
           upper.y + upper.height >= lower.y + lower.height;
}

} // namespace

Caption CaptionOf(const SubWindow& subWindow, const ChannelGroups& groups)
{
    if (subWindow.polledGroup) {
        return GroupCaption(*subWindow.polledGroup, groups);
    }
    return subWindow.media.empty() ? Caption{} : MediaCaption(subWindow);
}

Tally Count(const Wall& wall)
{
    Tally tally;
    for (const Window& window : wall.Windows()) {
        for (const SubWindow& subWindow : window.split.subWindows) {
            ++tally.subWindows;
            tally.playing += subWindow.media.empty() ? 0 : 1;
            tally.polling += subWindow.polledGroup ? 1 : 0;
            tally.sounding += subWindow.sound ? 1 : 0;
        }
    }
    return tally;
}

std::string TallyText(const Wall& wall, const char* separator)
{
    const Tally tally = Count(wall);
    std::string text =
        Plural(wall.Windows().size(), "window") + separator + Plural(tally.subWindows, "sub-window");
    const auto add = [&](std::size_t count, const char* what) {
        text += count != 0 ? fmt::format("{}{} {}", separator, count, what) : "";
    };
    add(tally.playing, "playing");
    add(tally.polling, "polling");
    add(tally.sounding, "with sound");
    return text;
}

std::string Plural(std::size_t count, const char* noun)
{
    return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

std::vector<VisibleWindow> VisibleWindows(const Wall& wall)
{
    const std::vector<Window>& windows = wall.Windows();
    std::vector<VisibleWindow> visible;
    std::vector<Rect> higher;
    std::size_t cells = 0;
    for (std::size_t layer = windows.size(); layer > 0; --layer) {
        const Window& window = windows[layer - 1];
        if (std::any_of(higher.begin(), higher.end(),
                        [&](const Rect& rect) { return Covers(rect, window.rect); })) {
            continue;
        }
        higher.push_back(window.rect);
        cells += window.split.subWindows.size();
        visible.push_back({&window, layer, cells <= kMaxCells});
    }
    std::reverse(visible.begin(), visible.end());
    return visible;
}

std::vector<const SubWindow*> VisibleSubWindows(const Window& window)
{
    if (window.zoomed) {
        return {window.split.Find(*window.zoomed)};
    }
    std::vector<const SubWindow*> all;
    for (const SubWindow& subWindow : window.split.subWindows) {
        all.push_back(&subWindow);
    }
    return all;
}

} // namespace simulated_decoder
