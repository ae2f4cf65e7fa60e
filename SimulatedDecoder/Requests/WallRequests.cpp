#include <algorithm>
#include <iterator>

#include "Requests/MediaReading.h"

namespace simulated_decoder {

namespace {

using tinyxml2::XMLElement;

// A window of a whole-wall request, and its place in the stacking order.
struct LayeredWindow {
    std::uint32_t layer = 0;
    Window window;
};

ErrorCode ReadShownSubWindow(RequestContext& context, const XMLElement& item, SubWindow& subWindow)
{
    auto read = ReadSubWindow(item);
    if (!read) {
        return ErrorCode::BadValue;
    }
    subWindow = std::move(*read);
    const XMLElement* mediaInfo = Child(&item, "mediainfo");
    return mediaInfo != nullptr ? ReadMedia(context, *mediaInfo, MediaForm::WithoutRecording, subWindow.media)
                                : ErrorCode::Success;
}

ErrorCode ReadLayeredWindow(RequestContext& context, const XMLElement& item, LayeredWindow& layered)
{
    const auto id = ReadId(item);
    const auto rect = ReadRect(item);
    const auto layer = ChildNumber<std::uint32_t>(&item, "layerindex");
    const auto mode = ChildNumber<std::uint32_t>(&item, "mode");
    const XMLElement* list = Child(&item, "td_subwindowlist");
    if (!id || !rect || !layer || !mode || list == nullptr) {
        return ErrorCode::BadValue;
    }
    layered = {*layer, {*id, *rect, {*mode, {}}}};
    for (const XMLElement* element = list->FirstChildElement("item"); element != nullptr;
         element = element->NextSiblingElement("item")) {
        SubWindow& subWindow = layered.window.split.subWindows.emplace_back();
        if (const ErrorCode code = ReadShownSubWindow(context, *element, subWindow);
            code != ErrorCode::Success) {
            return code;
        }
    }
    return ErrorCode::Success;
}

} // namespace

ErrorCode DoSetWall(RequestContext& context)
{
    std::vector<LayeredWindow> layered;
    const XMLElement* item = Child(Child(context.request.Body(), "td_windowlist"), "item");
    for (; item != nullptr; item = item->NextSiblingElement("item")) {
        const ErrorCode code = ReadLayeredWindow(context, *item, layered.emplace_back());
        if (code != ErrorCode::Success) {
            return code;
        }
    }
    if (layered.empty()) {
        return ErrorCode::BadValue;
    }
    std::stable_sort(layered.begin(), layered.end(),
                     [](const auto& one, const auto& other) { return one.layer < other.layer; });
    std::vector<Window> windows;
    std::transform(layered.begin(), layered.end(), std::back_inserter(windows),
                   [](LayeredWindow& each) { return std::move(each.window); });
    return context.state.wall.Replace(std::move(windows));
}

} // namespace simulated_decoder
