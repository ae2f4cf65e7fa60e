#include "Requests/RequestReading.h"

namespace simulated_decoder {

namespace {

using tinyxml2::XMLElement;

std::optional<GridPosition> ReadPosition(const XMLElement& item)
{
    const XMLElement* coordinate = Child(&item, "coordinate");
    const auto column = ChildNumber<std::uint32_t>(coordinate, "xpos");
    const auto row = ChildNumber<std::uint32_t>(coordinate, "ypos");
    if (!column || !row) {
        return std::nullopt;
    }
    return GridPosition{*column, *row};
}

std::optional<Binding> ReadBinding(const XMLElement& item)
{
    const auto output = ReadId(item);
    const auto position = ReadPosition(item);
    if (!output || !position) {
        return std::nullopt;
    }
    return Binding{*output, *position};
}

} // namespace

ErrorCode DoSetLayout(RequestContext& context)
{
    const auto rows = ChildNumber<int>(context.request.Body(), "row");
    const auto columns = ChildNumber<int>(context.request.Body(), "col");
    return rows && columns ? context.state.wall.Resize(*rows, *columns) : ErrorCode::BadValue;
}

ErrorCode DoGetLayout(RequestContext& context)
{
    const ScreenGrid& screens = context.state.wall.Screens();
    XMLElement& body = context.reply.Body();
    AddChild(body, "row", screens.Rows());
    AddChild(body, "col", screens.Columns());
    XMLElement& list = AddChild(body, "td_channellist");
    for (const auto& [position, output] : screens.Bound()) {
        // Hosts read an item's elements by position.
        XMLElement& item = AddChild(list, "item");
        AddChild(item, "id", output);
        AddChild(item, "name", "Output " + std::to_string(output));
        XMLElement& coordinate = AddChild(item, "coordinate");
        AddChild(coordinate, "xpos", position.column);
        AddChild(coordinate, "ypos", position.row);
    }
    return ErrorCode::Success;
}

ErrorCode DoBind(RequestContext& context)
{
    return ChangeByList(context, "td_channellist", ReadBinding,
                        [&](const auto& bindings) { return context.state.wall.Bind(bindings); });
}

ErrorCode DoUnbind(RequestContext& context)
{
    return ChangeByList(context, "td_channellist", ReadPosition,
                        [&](const auto& positions) { return context.state.wall.Unbind(positions); });
}

} // namespace simulated_decoder
