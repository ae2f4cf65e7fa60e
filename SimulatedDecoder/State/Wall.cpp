#include "State/Wall.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <set>
#include <unordered_map>
#include <unordered_set>

namespace simulated_decoder {

namespace {

ErrorCode CheckSplit(const Split& split)
{
    if (split.mode < 1 || split.mode > kMaxMode || split.mode != split.subWindows.size()) {
        return ErrorCode::WrongMode;
    }
    std::set<std::uint32_t> indexes;
    for (const SubWindow& subWindow : split.subWindows) {
        if (!indexes.insert(subWindow.index).second) {
            return ErrorCode::WrongMode;
        }
    }
    return ErrorCode::Success;
}

// Copies of the windows that one request changes, until the whole request has proved valid.
class Draft {
public:
    explicit Draft(std::vector<Window>& windows) : m_windows(windows)
    {
        for (std::size_t i = 0; i < windows.size(); ++i) {
            m_places.emplace(windows[i].id, i);
        }
    }

    // For changing; null when there is no such window.
    Window* Find(std::uint32_t id)
    {
        const auto place = m_places.find(id);
        return place != m_places.end()
                   ? &m_changed.try_emplace(place->second, m_windows[place->second]).first->second
                   : nullptr;
    }

    void Keep()
    {
        for (auto& [place, window] : m_changed) {
            m_windows[place] = std::move(window);
        }
    }

private:
    std::vector<Window>& m_windows;
    std::unordered_map<std::uint32_t, std::size_t> m_places;
    std::map<std::size_t, Window> m_changed;
};

// Applies `change` to the window of each item in turn, up to the first that is refused.
template <typename Items, typename Function>
ErrorCode ChangeEach(std::vector<Window>& windows, const Items& items, Function change)
{
    Draft draft(windows);
    for (const auto& item : items) {
        Window* window = draft.Find(item.id);
        const ErrorCode code = window != nullptr ? change(*window, item) : ErrorCode::UnknownWindow;
        if (code != ErrorCode::Success) {
            return code;
        }
    }
    draft.Keep();
    return ErrorCode::Success;
}

// The new split; sub-windows that existed before keep what they showed.
Split Inherit(Split split, const Split& before)
{
    for (SubWindow& subWindow : split.subWindows) {
        if (const SubWindow* old = before.Find(subWindow.index); old != nullptr) {
            const std::uint32_t osdId = subWindow.osdId;
            subWindow = *old;
            subWindow.osdId = osdId;
        }
    }
    return split;
}

} // namespace

ErrorCode Wall::Changed(ErrorCode code)
{
    if (code == ErrorCode::Success) {
        ++m_revision;
    }
    return code;
}

ErrorCode Wall::CheckRect(const Rect& rect) const
{
    if (rect.width <= 0 || rect.height <= 0) {
        return ErrorCode::EmptyRectangle;
    }
    const bool seen =
        rect.x < Width() && rect.y < Height() && rect.x + rect.width > 0 && rect.y + rect.height > 0;
    return seen ? ErrorCode::Success : ErrorCode::OffTheWall;
}

ErrorCode Wall::CheckWindow(const Window& window) const
{
    const ErrorCode code = CheckRect(window.rect);
    return code == ErrorCode::Success ? CheckSplit(window.split) : code;
}

bool Wall::IsPolled(std::int32_t group) const
{
    return std::any_of(m_windows.begin(), m_windows.end(), [group](const Window& window) {
        const auto& subWindows = window.split.subWindows;
        return std::any_of(subWindows.begin(), subWindows.end(),
                           [group](const SubWindow& subWindow) { return subWindow.polledGroup == group; });
    });
}

ErrorCode Wall::Resize(int rows, int columns)
{
    const Wall resized(rows, columns);
    if (!std::all_of(m_windows.begin(), m_windows.end(), [&](const Window& window) {
            return resized.CheckRect(window.rect) == ErrorCode::Success;
        })) {
        return ErrorCode::OffTheWall;
    }
    return Changed(m_screens.Resize(rows, columns));
}

ErrorCode Wall::Bind(const std::vector<Binding>& bindings) { return Changed(m_screens.Bind(bindings)); }

ErrorCode Wall::Unbind(const std::vector<GridPosition>& positions)
{
    return Changed(m_screens.Unbind(positions));
}

void Wall::Switch(const DisplaySwitches& switches)
{
    m_switches = switches;
    ++m_revision;
}

ErrorCode Wall::Create(const std::vector<Window>& windows)
{
    std::unordered_set<std::uint32_t> ids;
    for (const Window& window : m_windows) {
        ids.insert(window.id);
    }
    for (const Window& window : windows) {
        if (!ids.insert(window.id).second) {
            return ErrorCode::WindowExists;
        }
        if (const ErrorCode code = CheckWindow(window); code != ErrorCode::Success) {
            return code;
        }
        if (ids.size() > kMaxWindows) {
            return ErrorCode::TooManyWindows;
        }
    }
    m_windows.insert(m_windows.end(), windows.begin(), windows.end());
    return Changed(ErrorCode::Success);
}

ErrorCode Wall::Replace(std::vector<Window> windows)
{
    Wall replaced(Rows(), Columns());
    const ErrorCode code = replaced.Create(windows);
    if (code == ErrorCode::Success) {
        m_windows = std::move(windows);
    }
    return Changed(code);
}

ErrorCode Wall::Move(const std::vector<WindowMove>& moves)
{
    return Changed(ChangeEach(m_windows, moves, [this](Window& window, const WindowMove& move) {
        window.rect = move.rect;
        return CheckRect(move.rect);
    }));
}

ErrorCode Wall::Resplit(const std::vector<WindowSplit>& splits)
{
    return Changed(ChangeEach(m_windows, splits, [](Window& window, const WindowSplit& split) {
        window.split = Inherit(split.split, window.split);
        if (window.zoomed && window.split.Find(*window.zoomed) == nullptr) {
            window.zoomed.reset();
        }
        return CheckSplit(window.split);
    }));
}

ErrorCode Wall::Destroy(const std::vector<std::uint32_t>& ids)
{
    const std::unordered_set<std::uint32_t> doomed(ids.begin(), ids.end());
    std::vector<Window> rest;
    std::copy_if(m_windows.begin(), m_windows.end(), std::back_inserter(rest),
                 [&](const Window& window) { return !doomed.contains(window.id); });
    // An unknown or repeated id has moved no window.
    if (rest.size() + ids.size() != m_windows.size()) {
        return ErrorCode::UnknownWindow;
    }
    m_windows.swap(rest);
    return Changed(ErrorCode::Success);
}

ErrorCode Wall::Raise(std::uint32_t id)
{
    const auto window = std::find_if(m_windows.begin(), m_windows.end(),
                                     [id](const Window& candidate) { return candidate.id == id; });
    if (window == m_windows.end()) {
        return ErrorCode::UnknownWindow;
    }
    std::rotate(window, window + 1, m_windows.end());
    return Changed(ErrorCode::Success);
}

void Wall::Clear()
{
    m_windows.clear();
    ++m_revision;
}

ErrorCode Wall::Zoom(std::uint32_t id, std::uint32_t index, bool zoomed)
{
    const WindowOrder order{id, {}};
    return Changed(ChangeEach(m_windows, std::vector{order}, [&](Window& window, const WindowOrder&) {
        if (window.split.Find(index) == nullptr) {
            return ErrorCode::UnknownSubWindow;
        }
        window.zoomed = zoomed ? std::optional(index) : std::nullopt;
        return ErrorCode::Success;
    }));
}

ErrorCode Wall::ChangeSubWindows(const std::vector<WindowOrder>& orders)
{
    return Changed(ChangeEach(m_windows, orders, [](Window& window, const WindowOrder& order) {
        for (const auto& [index, change] : order.changes) {
            SubWindow* subWindow = window.split.Find(index);
            const ErrorCode code = subWindow != nullptr ? change(*subWindow) : ErrorCode::UnknownSubWindow;
            if (code != ErrorCode::Success) {
                return code;
            }
        }
        return ErrorCode::Success;
    }));
}

} // namespace simulated_decoder
