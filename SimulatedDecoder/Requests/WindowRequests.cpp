#include "Requests/RequestReading.h"

#include <optional>
#include <vector>

namespace simulated_decoder {

namespace {

using tinyxml2::XMLElement;

std::optional<WindowMove> ReadMove(const XMLElement& item)
{
    const auto id = ReadId(item);
    const auto rect = ReadRect(item);
    if (!id || !rect) {
        return std::nullopt;
    }
    return WindowMove{*id, *rect};
}

// A split request carries a rectangle, like the request that creates a window. It moves nothing and is not
// read.
std::optional<WindowSplit> ReadSplit(const XMLElement& item)
{
    const auto id = ReadId(item);
    const auto mode = ChildNumber<std::uint32_t>(&item, "mode");
    auto subWindows = ReadList(&item, "td_subwindowlist", ReadSubWindow);
    if (!id || !mode || !subWindows) {
        return std::nullopt;
    }
    return WindowSplit{*id, Split{*mode, std::move(*subWindows)}};
}

std::optional<Window> ReadWindow(const XMLElement& item)
{
    const auto rect = ReadRect(item);
    auto split = ReadSplit(item);
    if (!rect || !split) {
        return std::nullopt;
    }
    return Window{split->id, *rect, std::move(split->split)};
}

// Passes the body's windows to an operation of the wall.
template <typename Item>
ErrorCode ChangeWindows(RequestContext& context, std::optional<Item> (*readItem)(const XMLElement&),
                        ErrorCode (Wall::*change)(const std::vector<Item>&))
{
    return ChangeByList(context, "td_windowlist", readItem,
                        [&](const auto& windows) { return (context.state.wall.*change)(windows); });
}

} // namespace

ErrorCode DoCreateWindow(RequestContext& context)
{
    return ChangeWindows(context, ReadWindow, &Wall::Create);
}

ErrorCode DoModifyWindow(RequestContext& context) { return ChangeWindows(context, ReadMove, &Wall::Move); }

ErrorCode DoSplitWindow(RequestContext& context) { return ChangeWindows(context, ReadSplit, &Wall::Resplit); }

ErrorCode DoDestroyWindow(RequestContext& context) { return ChangeWindows(context, ReadId, &Wall::Destroy); }

ErrorCode DoWindowTop(RequestContext& context)
{
    const XMLElement* window = Child(context.request.Body(), "td_window");
    const auto id = ChildNumber<std::uint32_t>(window, "id");
    return id ? context.state.wall.Raise(*id) : ErrorCode::BadValue;
}

ErrorCode DoWallClear(RequestContext& context)
{
    context.state.wall.Clear();
    return ErrorCode::Success;
}

} // namespace simulated_decoder
