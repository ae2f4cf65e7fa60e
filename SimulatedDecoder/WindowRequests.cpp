#include "RequestHandlers.h"

#include <optional>
#include <vector>

namespace simulated_decoder {

namespace {

using tinyxml2::XMLElement;

// The items of a list under `parent`; nothing when there is no such list or one of its items cannot be read.
template <typename Item>
std::optional<std::vector<Item>> ReadList(const XMLElement* parent, const char* name,
                                          std::optional<Item> (*readItem)(const XMLElement&))
{
    const XMLElement* list = parent != nullptr ? parent->FirstChildElement(name) : nullptr;
    if (list == nullptr) {
        return std::nullopt;
    }
    std::vector<Item> items;
    for (const XMLElement* element = list->FirstChildElement("item"); element != nullptr;
         element = element->NextSiblingElement("item")) {
        std::optional<Item> item = readItem(*element);
        if (!item) {
            return std::nullopt;
        }
        items.push_back(std::move(*item));
    }
    return items;
}

std::optional<std::uint32_t> ReadId(const XMLElement& item)
{
    return ChildNumber<std::uint32_t>(&item, "id");
}

std::optional<Rect> ReadRect(const XMLElement& item)
{
    const XMLElement* rect = item.FirstChildElement("rect");
    const auto x = ChildNumber<std::int64_t>(rect, "xpos");
    const auto y = ChildNumber<std::int64_t>(rect, "ypos");
    const auto width = ChildNumber<std::int64_t>(rect, "width");
    const auto height = ChildNumber<std::int64_t>(rect, "height");
    if (!x || !y || !width || !height) {
        return std::nullopt;
    }
    return Rect{*x, *y, *width, *height};
}

std::optional<SubWindow> ReadSubWindow(const XMLElement& item)
{
    const auto index = ChildNumber<std::uint32_t>(&item, "index");
    const auto osdId = ChildNumber<std::uint32_t>(&item, "osdid");
    if (!index || !osdId) {
        return std::nullopt;
    }
    return SubWindow{*index, *osdId};
}

std::optional<WindowMove> ReadMove(const XMLElement& item)
{
    const auto id = ReadId(item);
    const auto rect = ReadRect(item);
    if (!id || !rect) {
        return std::nullopt;
    }
    return WindowMove{*id, *rect};
}

// A split request carries a rectangle like the one that creates a window. It moves nothing, and is not read.
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

// Reads the window list of the body and hands it to an operation of the wall. An empty list is no request.
template <typename Item>
ErrorCode ChangeWindows(RequestContext& context, std::optional<Item> (*readItem)(const XMLElement&),
                        ErrorCode (Wall::*change)(const std::vector<Item>&))
{
    const auto items = ReadList(context.request.Body(), "td_windowlist", readItem);
    if (!items || items->empty()) {
        return ErrorCode::BadValue;
    }
    return (context.wall.*change)(*items);
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
    const XMLElement* body = context.request.Body();
    const XMLElement* window = body != nullptr ? body->FirstChildElement("td_window") : nullptr;
    const auto id = ChildNumber<std::uint32_t>(window, "id");
    return id ? context.wall.Raise(*id) : ErrorCode::BadValue;
}

ErrorCode DoWallClear(RequestContext& context)
{
    context.wall.Clear();
    return ErrorCode::Success;
}

} // namespace simulated_decoder
