#include "Requests/RequestReading.h"

namespace simulated_decoder {

namespace {

using tinyxml2::XMLElement;

SubWindowChange SetSound(std::optional<std::int32_t> channel)
{
    return [channel](SubWindow& subWindow) {
        subWindow.sound = channel;
        return ErrorCode::Success;
    };
}

} // namespace

ErrorCode DoOpenSound(RequestContext& context)
{
    return ChangeSubWindows(context, [&](const XMLElement& item, SubWindowChange& change) {
        const auto channel = ChildNumber<std::int32_t>(&item, "td_channel");
        if (!channel) {
            return ErrorCode::BadValue;
        }
        change = SetSound(channel);
        return context.state.channels.Has(*channel) ? ErrorCode::Success : ErrorCode::UnknownChannel;
    });
}

ErrorCode DoCloseSound(RequestContext& context)
{
    return ChangeSubWindows(context, [](const XMLElement&, SubWindowChange& change) {
        change = SetSound(std::nullopt);
        return ErrorCode::Success;
    });
}

ErrorCode DoGetSound(RequestContext& context)
{
    XMLElement& list = AddChild(context.reply.Body(), "td_windowlist");
    for (const Window& window : context.state.wall.Windows()) {
        XMLElement* subWindows = nullptr; // the window is listed only when a sub-window has sound
        for (const SubWindow& subWindow : window.split.subWindows) {
            if (!subWindow.sound) {
                continue;
            }
            if (subWindows == nullptr) {
                XMLElement& item = AddChild(list, "item");
                AddChild(item, "id", window.id);
                subWindows = &AddChild(item, "td_subwindowlist");
            }
            XMLElement& item = AddChild(*subWindows, "item");
            AddChild(item, "index", subWindow.index);
            AddChild(item, "channelid", *subWindow.sound);
        }
    }
    return ErrorCode::Success;
}

} // namespace simulated_decoder
