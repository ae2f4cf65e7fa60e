#include "Requests/RequestReading.h"

namespace simulated_decoder {

namespace {

using tinyxml2::XMLElement;

ErrorCode ReadOrder(const XMLElement& window, const ReadChange& read, WindowOrder& order)
{
    const auto id = ReadId(window);
    const XMLElement* list = Child(&window, "td_subwindowlist");
    if (!id || list == nullptr) {
        return ErrorCode::BadValue;
    }
    order.id = *id;
    for (const XMLElement* item = list->FirstChildElement("item"); item != nullptr;
         item = item->NextSiblingElement("item")) {
        const auto index = ChildNumber<std::uint32_t>(item, "index");
        SubWindowChange change;
        const ErrorCode code = index ? read(*item, change) : ErrorCode::BadValue;
        if (code != ErrorCode::Success) {
            return code;
        }
        order.changes.emplace_back(*index, std::move(change));
    }
    return ErrorCode::Success;
}

// A 32-bit number. Hosts write it unsigned when they create a window, signed when they move one.
std::optional<std::int64_t> ReadPixels(const XMLElement* rect, const char* name)
{
    const auto value = ChildNumber<std::int64_t>(rect, name);
    return value && *value >= INT32_MIN && *value <= UINT32_MAX ? value : std::nullopt;
}

} // namespace

const XMLElement* Child(const XMLElement* parent, const char* name)
{
    return parent != nullptr ? parent->FirstChildElement(name) : nullptr;
}

std::optional<std::uint32_t> ReadId(const XMLElement& item)
{
    return ChildNumber<std::uint32_t>(&item, "id");
}

std::optional<Rect> ReadRect(const XMLElement& item)
{
    const XMLElement* rect = Child(&item, "rect");
    const auto x = ReadPixels(rect, "xpos");
    const auto y = ReadPixels(rect, "ypos");
    const auto width = ReadPixels(rect, "width");
    const auto height = ReadPixels(rect, "height");
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

std::optional<bool> ReadSwitch(const XMLElement* parent, const char* name)
{
    const auto value = ChildNumber<std::uint32_t>(parent, name);
    return value && *value <= 1 ? std::optional(*value == 1) : std::nullopt;
}

ErrorCode ChangeSubWindows(RequestContext& context, const ReadChange& read)
{
    std::vector<WindowOrder> orders;
    const XMLElement* list = Child(context.request.Body(), "td_windowlist");
    const XMLElement* window = Child(list, "item");
    for (; window != nullptr; window = window->NextSiblingElement("item")) {
        const ErrorCode code = ReadOrder(*window, read, orders.emplace_back());
        if (code != ErrorCode::Success) {
            return code;
        }
    }
    return !orders.empty() ? context.state.wall.ChangeSubWindows(orders) : ErrorCode::BadValue;
}

} // namespace simulated_decoder
