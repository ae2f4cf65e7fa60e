#include "Page/PageTexts.h"

#include <algorithm>
#include <chrono>
#include <optional>

#include <nlohmann/json.hpp>
#include <spdlog/fmt/fmt.h>

#include "Requests/RequestHandlers.h"

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

Json CellJson(const CellView& view)
{
    Json cell{{"index", view.index}, {"osd", view.osdId}};
    if (view.kind != CellView::Kind::Idle) {
        cell["title"] = view.title;
        cell["detail"] = view.detail;
        cell["polling"] = view.kind == CellView::Kind::Polls;
    }
    AddIfThere(cell, "sound", view.sound);
    if (view.border) {
        cell["border"] = true;
    }
    return cell;
}

Json ToJson(const WindowView& view)
{
    Json json{{"id", view.id},    {"layer", view.layer},      {"x", view.rect.x},
              {"y", view.rect.y}, {"width", view.rect.width}, {"height", view.rect.height},
              {"mode", view.mode}};
    AddIfThere(json, "zoomed", view.zoomed);
    json["playing"] = view.showing;
    for (const CellView& cell : view.cells) {
        json["cells"].push_back(CellJson(cell));
    }
    return json;
}

Json ToJson(const std::vector<ScreenView>& screens)
{
    Json list = Json::array();
    for (const ScreenView& screen : screens) {
        if (screen.output) {
            list.push_back({{"column", screen.position.column},
                            {"row", screen.position.row},
                            {"output", *screen.output}});
        }
    }
    return list;
}

Json ToJson(const PastMessage& message)
{
    return {{"text", message.text},
            {"length", message.length},
            {"kept", std::min(message.length, PastMessage::kKept)}};
}

} // namespace

std::string AboutJson(const Device& device, bool exposed)
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
                 {"exposed", exposed},
                 {"faults", faults},
                 {"urls", ServedUrls()}});
}

std::string WallJson(const WallView& view)
{
    Json windows = Json::array();
    for (const WindowView& window : view.windows) {
        windows.push_back(ToJson(window));
    }
    return Text({{"rows", view.rows},
                 {"columns", view.columns},
                 {"width", view.rect.width},
                 {"height", view.rect.height},
                 {"borders", view.switches.borders},
                 {"windowIds", view.switches.windowIds},
                 {"summary", fmt::format("{}", fmt::join(view.tally, ", "))},
                 {"screens", ToJson(view.screens)},
                 {"windows", windows}});
}

std::string WindowJson(const WindowView& view) { return Text(ToJson(view)); }

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
        Json json{{"number", past.number},
                  {"time", Milliseconds(past.time)},
                  {"host", past.connection},
                  {"url", past.url}};
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

std::string RequestJson(const PastRequest& past)
{
    return Text({{"request", ToJson(past.request)}, {"reply", past.reply ? ToJson(*past.reply) : Json()}});
}

} // namespace simulated_decoder
