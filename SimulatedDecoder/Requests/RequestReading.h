#pragma once
// Reading of request bodies, shared by several families of handlers.

#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include <tinyxml2.h>

#include "Requests/RequestHandlers.h"

namespace simulated_decoder {

// The element below `parent`; null when it is missing or `parent` is null.
const tinyxml2::XMLElement* Child(const tinyxml2::XMLElement* parent, const char* name);

// The items of a list under `parent`; nothing when there is no such list or an item cannot be read.
template <typename Item>
std::optional<std::vector<Item>> ReadList(const tinyxml2::XMLElement* parent, const char* name,
                                          std::optional<Item> (*readItem)(const tinyxml2::XMLElement&))
{
    const tinyxml2::XMLElement* list = Child(parent, name);
    if (list == nullptr) {
        return std::nullopt;
    }
    std::vector<Item> items;
    for (const tinyxml2::XMLElement* element = list->FirstChildElement("item"); element != nullptr;
         element = element->NextSiblingElement("item")) {
        std::optional<Item> item = readItem(*element);
        if (!item) {
            return std::nullopt;
        }
        items.push_back(std::move(*item));
    }
    return items;
}

// Reads a list from the body and passes it to `change`. An empty list is refused.
template <typename Item, typename Change>
ErrorCode ChangeByList(RequestContext& context, const char* name,
                       std::optional<Item> (*readItem)(const tinyxml2::XMLElement&), Change change)
{
    const auto items = ReadList(context.request.Body(), name, readItem);
    return items && !items->empty() ? change(*items) : ErrorCode::BadValue;
}

// The number in `id`.
std::optional<std::uint32_t> ReadId(const tinyxml2::XMLElement& item);
std::optional<Rect> ReadRect(const tinyxml2::XMLElement& item);
std::optional<SubWindow> ReadSubWindow(const tinyxml2::XMLElement& item);

// 0 or 1; nothing when it is neither.
std::optional<bool> ReadSwitch(const tinyxml2::XMLElement* parent, const char* name);

// What an `item` of td_subwindowlist says about its sub-window, besides the `index`.
using ReadChange = std::function<ErrorCode(const tinyxml2::XMLElement& item, SubWindowChange& change)>;

// Changes the sub-windows that td_windowlist names. A window that names none stays as it is.
ErrorCode ChangeSubWindows(RequestContext& context, const ReadChange& read);

} // namespace simulated_decoder
