#include "Requests/RequestReading.h"

namespace simulated_decoder {

using tinyxml2::XMLElement;

ErrorCode DoDrawBorder(RequestContext& context)
{
    return ChangeSubWindows(context, [](const XMLElement& item, SubWindowChange& change) {
        const auto border = ChildNumber<std::int16_t>(&item, "drawborder");
        change = [on = border.value_or(0) != 0](SubWindow& subWindow) {
            subWindow.border = on;
            return ErrorCode::Success;
        };
        return border ? ErrorCode::Success : ErrorCode::BadValue;
    });
}

ErrorCode DoFullScreen(RequestContext& context)
{
    const XMLElement* window = Child(context.request.Body(), "td_window");
    const auto enable = ReadSwitch(context.request.Body(), "enable");
    const auto id = ChildNumber<std::uint32_t>(window, "id");
    const auto index = ChildNumber<std::uint32_t>(Child(window, "td_subwindow"), "index");
    return enable && id && index ? context.state.wall.Zoom(*id, *index, *enable) : ErrorCode::BadValue;
}

ErrorCode DoSetWindowConfig(RequestContext& context)
{
    const auto borders = ReadSwitch(context.request.Body(), "enableborder");
    const auto windowIds = ReadSwitch(context.request.Body(), "enableshowwinid");
    if (!borders || !windowIds) {
        return ErrorCode::BadValue;
    }
    context.state.wall.Switch({*borders, *windowIds});
    return ErrorCode::Success;
}

ErrorCode DoGetWindowConfig(RequestContext& context)
{
    const DisplaySwitches& switches = context.state.wall.Switches();
    AddChild(context.reply.Body(), "enableborder", switches.borders ? 1 : 0);
    AddChild(context.reply.Body(), "enableshowwinid", switches.windowIds ? 1 : 0);
    return ErrorCode::Success;
}

} // namespace simulated_decoder
