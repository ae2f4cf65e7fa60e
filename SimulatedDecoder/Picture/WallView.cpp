#include "Picture/WallView.h"

#include <algorithm>

#include <spdlog/fmt/fmt.h>

namespace simulated_decoder {

namespace {

constexpr std::size_t kMaxCells = 2048;
constexpr std::size_t kMaxBusy = 100;

std::string Plural(std::size_t count, const char* noun)
{
    return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

void CaptionMedia(CellView& cell, const SubWindow& subWindow)
{
    const Media& media = subWindow.media.front();
    cell.kind = CellView::Kind::Plays;
    cell.title = fmt::format("{}:{}", media.address, media.port);
    if (subWindow.control) {
        cell.detail += fmt::format("control {}={}, ", subWindow.control->type, subWindow.control->value);
    }
    if (subWindow.media.size() > 1) {
        cell.detail += fmt::format("+{} more, ", subWindow.media.size() - 1);
    }
    cell.detail += fmt::format("stream {}", media.streamType);
    if (!media.channel.empty()) {
        cell.detail += fmt::format(", ch {}", media.channel);
    }
}

void CaptionGroup(CellView& cell, std::int32_t id, const ChannelGroups& groups)
{
    cell.kind = CellView::Kind::Polls;
    cell.title = fmt::format("group {}", id);
    if (const auto found = groups.All().find(id); found != groups.All().end()) {
        cell.detail =
            fmt::format("ch {}, every {}", fmt::join(found->second.channels, ","), found->second.interval);
    }
}

CellView SeeCell(const DeviceState& state, const SubWindow& subWindow)
{
    CellView cell;
    cell.index = subWindow.index;
    cell.osdId = subWindow.osdId;
    cell.sound = subWindow.sound;
    cell.border = subWindow.border;
    cell.framed = subWindow.border && state.wall.Switches().borders;
    if (subWindow.polledGroup) {
        CaptionGroup(cell, *subWindow.polledGroup, state.groups);
    } else if (!subWindow.media.empty()) {
        CaptionMedia(cell, subWindow);
    }
    return cell;
}

void SeeCells(const DeviceState& state, const Window& window, WindowView& view)
{
    for (const SubWindow& subWindow : window.split.subWindows) {
        view.cells.push_back(SeeCell(state, subWindow));
    }
    const std::size_t seen = view.SeenCells().size();
    while (view.columns * view.columns < seen) {
        ++view.columns;
    }
    view.rows = (seen + view.columns - 1) / view.columns;
}

Rect Common(const Rect& a, const Rect& b)
{
    const std::int64_t x = std::max(a.x, b.x);
    const std::int64_t y = std::max(a.y, b.y);
    return {x, y, std::min(a.x + a.width, b.x + b.width) - x, std::min(a.y + a.height, b.y + b.height) - y};
}

WindowView SeeWithoutCells(const Wall& wall, std::size_t layer)
{
    const Window& window = wall.Windows()[layer - 1];
    const auto& subWindows = window.split.subWindows;
    WindowView view;
    view.id = window.id;
    view.layer = layer;
    view.rect = window.rect;
    view.seen = Common(window.rect, {0, 0, wall.Width(), wall.Height()});
    view.mode = window.split.mode;
    view.zoomed = window.zoomed;
    view.showing = static_cast<std::size_t>(
        std::count_if(subWindows.begin(), subWindows.end(),
                      [](const SubWindow& subWindow) { return !subWindow.IsIdle(); }));
    return view;
}

bool Covers(const Rect& upper, const Rect& lower)
{
    return upper.x <= lower.x && upper.y <= lower.y && upper.x + upper.width >= lower.x + lower.width &&
           upper.y + upper.height >= lower.y + lower.height;
}

std::vector<WindowView> SeeWindows(const DeviceState& state)
{
    std::vector<WindowView> windows;
    std::vector<Rect> higher; // those not covered
    std::size_t cells = 0;
    for (std::size_t layer = state.wall.Windows().size(); layer > 0; --layer) {
        const Window& window = state.wall.Windows()[layer - 1];
        WindowView& view = windows.emplace_back(SeeWithoutCells(state.wall, layer));
        view.covered = std::any_of(higher.begin(), higher.end(),
                                   [&](const Rect& rect) { return Covers(rect, window.rect); });
        if (view.covered) {
            continue;
        }
        higher.push_back(window.rect);
        cells += window.split.subWindows.size();
        if (cells <= kMaxCells) {
            SeeCells(state, window, view);
        }
    }
    std::reverse(windows.begin(), windows.end());
    return windows;
}

std::vector<ScreenView> SeeScreens(const ScreenGrid& grid)
{
    std::vector<ScreenView> screens;
    for (std::uint32_t row = 0; row < static_cast<std::uint32_t>(grid.Rows()); ++row) {
        for (std::uint32_t column = 0; column < static_cast<std::uint32_t>(grid.Columns()); ++column) {
            ScreenView& screen = screens.emplace_back();
            screen.position = {column, row};
            screen.rect = {column * kScreenWidth, row * kScreenHeight, kScreenWidth, kScreenHeight};
            if (const auto found = grid.Bound().find(screen.position); found != grid.Bound().end()) {
                screen.output = found->second;
            }
        }
    }
    return screens;
}

// Visits all sub-windows, from the highest layer down.
void SeeSubWindows(const DeviceState& state, WallView& view)
{
    std::size_t all = 0;
    std::size_t playing = 0;
    std::size_t polling = 0;
    std::size_t sounding = 0;
    const std::vector<Window>& windows = state.wall.Windows();
    for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
        for (const SubWindow& subWindow : window->split.subWindows) {
            ++all;
            playing += subWindow.media.empty() ? 0 : 1;
            polling += subWindow.polledGroup ? 1 : 0;
            sounding += subWindow.sound ? 1 : 0;
            if ((!subWindow.IsIdle() || subWindow.sound || subWindow.border) &&
                ++view.busyCount <= kMaxBusy) {
                view.busy.push_back({window->id, SeeCell(state, subWindow)});
            }
        }
    }
    view.tally = {Plural(windows.size(), "window"), Plural(all, "sub-window")};
    const auto add = [&](std::size_t count, const char* what) {
        if (count != 0) {
            view.tally.push_back(fmt::format("{} {}", count, what));
        }
    };
    add(playing, "playing");
    add(polling, "polling");
    add(sounding, "with sound");
}

} // namespace

std::string CellView::Shows(const char* idle) const
{
    return kind == Kind::Idle ? idle : detail.empty() ? title : title + ", " + detail;
}

std::span<const CellView> WindowView::SeenCells() const
{
    const auto fills = [this](const CellView& cell) { return cell.index == zoomed; };
    const auto found = std::find_if(cells.begin(), cells.end(), fills);
    return found != cells.end() ? std::span(found, 1) : std::span(cells);
}

WallView See(const DeviceState& state)
{
    const Wall& wall = state.wall;
    WallView view;
    view.rows = wall.Rows();
    view.columns = wall.Columns();
    view.rect = {0, 0, wall.Width(), wall.Height()};
    view.bound = wall.Screens().Bound().size();
    view.switches = wall.Switches();
    if (!view.switches.borders) {
        view.switchedOff.emplace_back("borders off");
    }
    if (!view.switches.windowIds) {
        view.switchedOff.emplace_back("window ids off");
    }
    view.screens = SeeScreens(wall.Screens());
    view.windows = SeeWindows(state);
    SeeSubWindows(state, view);
    return view;
}

std::optional<WindowView> SeeWindow(const DeviceState& state, std::uint32_t id)
{
    const std::vector<Window>& windows = state.wall.Windows();
    const auto found =
        std::find_if(windows.begin(), windows.end(), [id](const Window& window) { return window.id == id; });
    if (found == windows.end()) {
        return std::nullopt;
    }
    WindowView view = SeeWithoutCells(state.wall, static_cast<std::size_t>(found - windows.begin()) + 1);
    SeeCells(state, *found, view);
    return view;
}

} // namespace simulated_decoder
