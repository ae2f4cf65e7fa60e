#include "Page/PageTexts.h"

#include <algorithm>
#include <chrono>
#include <set>

#include <nlohmann/json.hpp>

#include "Picture/Captions.h"
#include "Requests/RequestHandlers.h"
#include "State/SubWindowGrid.h"

namespace simulated_decoder {

namespace {

using Json = nlohmann::ordered_json;

std::string Text(const Json& json) { return json.dump(-1, ' ', false, Json::error_handler_t::replace); }

std::int64_t Milliseconds(std::chrono::system_clock::time_point time)
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count();
}

template <typename Value>
void AddIfThere(Json& json, const char* name, const std::optional<Value>& value)
{
    if (value) {
        json[name] = *value;
    }
}

Json CellJson(const SubWindow& subWindow, const ChannelGroups& groups)
{
    Json cell{{"index", subWindow.index}, {"osd", subWindow.osdId}};
    if (!subWindow.IsIdle()) {
        const Caption caption = CaptionOf(subWindow, groups);
        cell["title"] = caption.title;
        cell["detail"] = caption.detail;
        cell["polling"] = subWindow.polledGroup.has_value();
    }
    AddIfThere(cell, "sound", subWindow.sound);
    if (subWindow.border) {
        cell["border"] = true;
    }
    return cell;
}

Json BareWindowJson(const Window& window, std::size_t layer)
{
    Json json{{"id", window.id},
              {"layer", layer},
              {"x", window.rect.x},
              {"y", window.rect.y},
              {"width", window.rect.width},
              {"height", window.rect.height},
              {"mode", window.split.mode}};
    AddIfThere(json, "zoomed", window.zoomed);
    json["playing"] = std::count_if(window.split.subWindows.begin(), window.split.subWindows.end(),
                                    [](const SubWindow& subWindow) { return !subWindow.IsIdle(); });
    return json;
}

void AddCells(Json& json, const Window& window, const ChannelGroups& groups)
{
    json["columns"] = SubWindowGrid(window.split.subWindows.size()).columns;
    Json& cells = json["cells"] = Json::array();
    for (const SubWindow& subWindow : window.split.subWindows) {
        cells.push_back(CellJson(subWindow, groups));
    }
}

Json ScreensJson(const ScreenGrid& screens)
{
    Json list = Json::array();
    for (const auto& [position, output] : screens.Bound()) {
        list.push_back({{"column", position.column}, {"row", position.row}, {"output", output}});
    }
    return list;
}

} // namespace

std::string AboutJson(const Device& device)
{
    Json faults = Json::array();
    for (const FaultKind& kind : FaultKinds()) {
        faults.push_back({{"name", kind.name},
                          {"form", kind.form},
                          {"help", kind.help},
                          {"ofUrl", kind.ofUrl},
                          {"minimum", kind.minimum},
                          {"maximum", kind.maximum}});
    }
    return Text({{"name", device.State().name},
                 {"version", TVWALL_DECODER_VERSION},
                 {"faults", faults},
                 {"urls", ServedUrls()}});
}

std::string WallJson(const DeviceState& state)
{
    const Wall& wall = state.wall;
    std::set<std::size_t> withCells; // their layers
    for (const VisibleWindow& visible : VisibleWindows(wall)) {
        if (visible.withCells) {
            withCells.insert(visible.layer);
        }
    }
    Json windows = Json::array();
    for (std::size_t layer = 1; layer <= wall.Windows().size(); ++layer) {
        const Window& window = wall.Windows()[layer - 1];
        Json json = BareWindowJson(window, layer);
        if (withCells.count(layer) != 0) {
            AddCells(json, window, state.groups);
        }
        windows.push_back(std::move(json));
    }
    return Text({{"rows", wall.Rows()},
                 {"columns", wall.Columns()},
                 {"width", wall.Width()},
                 {"height", wall.Height()},
                 {"borders", wall.Switches().borders},
                 {"windowIds", wall.Switches().windowIds},
                 {"summary", TallyText(wall, ", ")},
                 {"screens", ScreensJson(wall.Screens())},
                 {"windows", windows}});
}

std::optional<std::string> WindowJson(const DeviceState& state, std::uint32_t id)
{
    const std::vector<Window>& windows = state.wall.Windows();
    const auto found =
        std::find_if(windows.begin(), windows.end(), [id](const Window& window) { return window.id == id; });
    if (found == windows.end()) {
        return std::nullopt;
    }
    Json json = BareWindowJson(*found, static_cast<std::size_t>(found - windows.begin()) + 1);
    AddCells(json, *found, state.groups);
    return Text(json);
}

std::string ActivityJson(const Device& device, const std::vector<HostStatus>& hosts)
{
    Json hostList = Json::array();
    for (const HostStatus& host : hosts) {
        hostList.push_back({{"number", host.number},
                            {"address", host.address},
                            {"since", Milliseconds(host.since)},
                            {"loggedIn", host.loggedIn},
                            {"requests", host.requests}});
    }
    Json requests = Json::array();
    for (const PastRequest& past : device.Requests().All()) {
        Json json{{"time", Milliseconds(past.time)}, {"host", past.connection}, {"url", past.url}};
        AddIfThere(json, "seq", past.seq);
        AddIfThere(json, "code", past.answered);
        json["words"] = past.words;
        requests.push_back(std::move(json));
    }
    Json faults = Json::array();
    for (const ActiveFault& fault : ListFaults(device.ActiveFaults())) {
        faults.push_back({{"name", fault.name}, {"url", fault.url}, {"number", fault.number}});
    }
    return Text({{"hosts", hostList}, {"requests", requests}, {"faults", faults}});
}

} // namespace simulated_decoder
