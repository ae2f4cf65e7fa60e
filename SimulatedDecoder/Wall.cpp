#include "Wall.h"

#include <algorithm>
#include <set>

namespace simulated_decoder {

namespace {

template <typename Windows>
auto Find(Windows& windows, std::uint32_t id)
{
    return std::find_if(windows.begin(), windows.end(),
                        [id](const Window& window) { return window.id == id; });
}

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

// Applies `change` to each item in turn, up to the first that is refused.
template <typename Items, typename Function>
ErrorCode ForEach(const Items& items, Function change)
{
    for (const auto& item : items) {
        const ErrorCode code = change(item);
        if (code != ErrorCode::Success) {
            return code;
        }
    }
    return ErrorCode::Success;
}

} // namespace

ErrorCode Wall::Change(const std::function<ErrorCode(Draft&)>& change)
{
    Draft draft = m_windows;
    const ErrorCode code = change(draft);
    if (code == ErrorCode::Success) {
        m_windows.swap(draft);
        ++m_revision;
    }
    return code;
}

ErrorCode Wall::CheckRect(const Rect& rect) const
{
    if (rect.width <= 0 || rect.height <= 0) {
        return ErrorCode::EmptyRectangle;
    }
    // Differences, because the sum of two values from the link may overflow.
    const bool inside = rect.x >= 0 && rect.y >= 0 && rect.x <= Width() && rect.y <= Height() &&
                        rect.width <= Width() - rect.x && rect.height <= Height() - rect.y;
    return inside ? ErrorCode::Success : ErrorCode::OffTheWall;
}

ErrorCode Wall::Create(const std::vector<Window>& windows)
{
    return Change([&](Draft& draft) {
        return ForEach(windows, [&](const Window& window) {
            if (Find(draft, window.id) != draft.end()) {
                return ErrorCode::WindowExists;
            }
            if (const ErrorCode code = CheckRect(window.rect); code != ErrorCode::Success) {
                return code;
            }
            if (const ErrorCode code = CheckSplit(window.split); code != ErrorCode::Success) {
                return code;
            }
            if (draft.size() >= kMaxWindows) {
                return ErrorCode::TooManyWindows;
            }
            draft.push_back(window);
            return ErrorCode::Success;
        });
    });
}

ErrorCode Wall::Move(const std::vector<WindowMove>& moves)
{
    return Change([&](Draft& draft) {
        return ForEach(moves, [&](const WindowMove& move) {
            const auto window = Find(draft, move.id);
            if (window == draft.end()) {
                return ErrorCode::UnknownWindow;
            }
            window->rect = move.rect;
            return CheckRect(move.rect);
        });
    });
}

ErrorCode Wall::Resplit(const std::vector<WindowSplit>& splits)
{
    return Change([&](Draft& draft) {
        return ForEach(splits, [&](const WindowSplit& split) {
            const auto window = Find(draft, split.id);
            if (window == draft.end()) {
                return ErrorCode::UnknownWindow;
            }
            window->split = split.split;
            return CheckSplit(split.split);
        });
    });
}

ErrorCode Wall::Destroy(const std::vector<std::uint32_t>& ids)
{
    return Change([&](Draft& draft) {
        return ForEach(ids, [&](std::uint32_t id) {
            const auto window = Find(draft, id);
            if (window == draft.end()) {
                return ErrorCode::UnknownWindow;
            }
            draft.erase(window);
            return ErrorCode::Success;
        });
    });
}

ErrorCode Wall::Raise(std::uint32_t id)
{
    return Change([&](Draft& draft) {
        const auto window = Find(draft, id);
        if (window == draft.end()) {
            return ErrorCode::UnknownWindow;
        }
        std::rotate(window, window + 1, draft.end());
        return ErrorCode::Success;
    });
}

void Wall::Clear()
{
    m_windows.clear();
    ++m_revision;
}

} // namespace simulated_decoder
