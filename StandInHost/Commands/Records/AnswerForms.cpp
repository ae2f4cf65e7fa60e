#include "Commands/Records/AnswerForms.h"

#include <algorithm>

#include <nlohmann/json.hpp>
#include <tinyxml2.h>

#include "Base/GuidText.h"
#include "Commands/Records/TextTable.h"
#include "TvwallProtocol.h"

namespace standin_host {

namespace {

using Rows = std::vector<std::vector<std::string>>;

std::string NumberText(const Fields& value) { return value.dump(); }

std::string OnOff(const Fields& value) { return value.get<bool>() ? "on" : "off"; }

void ReadNothing(ByteReader&, Fields&) {}

std::string ShowDone(const Fields&) { return "done"; }

// The result record that begins the answer to an option command. It says nothing that the command and the
// kind of the answer do not: option type, lengths, and two zeros.
void ReadHead(ByteReader& reader, Fields& /*fields*/)
{
    reader.Text(sizeof(ORVA2_DECODER_TVW::S_Decoder_Default_Result));
}

// --- login ---

void ReadLogin(ByteReader& reader, Fields& fields)
{
    fields["nodeId"] = GuidText(reader.Guid());
    fields["nodeType"] = reader.U32();
    reader.Text(112); // not filled by the plug-in
}

std::string ShowLogin(const Fields& fields)
{
    return "logged in, answered by node " + fields["nodeId"].get<std::string>() + ", type " +
           NumberText(fields["nodeType"]);
}

// --- the decoder itself ---

constexpr const char* kInfoTexts[] = {"softwareVersion", "buildDate", "kernelVersion", "dataVersion"};
constexpr std::size_t kInfoText = 64;

void ReadSystemInfo(ByteReader& reader, Fields& fields)
{
    ReadHead(reader, fields);
    fields["decoder"] = GuidText(reader.Guid());
    fields["name"] = reader.Text(kInfoText);
    fields["model"] = reader.I32();
    fields["deviceType"] = reader.Text(kInfoText);
    fields["mac"] = reader.Text(kInfoText);
    for (const char* field : kInfoTexts) {
        fields[field] = reader.Text(kInfoText);
    }
}

std::string ShowSystemInfo(const Fields& fields)
{
    const auto text = [&](const char* field) { return fields[field].get<std::string>(); };
    return "the decoder says" + TextTable({{"name:", text("name")},
                                           {"model:", NumberText(fields["model"])},
                                           {"device type:", text("deviceType")},
                                           {"MAC address:", text("mac")},
                                           {"software version:", text("softwareVersion")},
                                           {"build date:", text("buildDate")},
                                           {"kernel version:", text("kernelVersion")},
                                           {"data version:", text("dataVersion")}});
}

void ReadBasicConfig(ByteReader& reader, Fields& fields)
{
    ReadHead(reader, fields);
    fields["wall"] = GuidText(reader.Guid());
    fields["identity"] = reader.U32();
    fields["runMode"] = reader.U32();
    fields["name"] = reader.Rest();
}

std::string ShowBasicConfig(const Fields& fields)
{
    return "the decoder says" + TextTable({{"name:", fields["name"].get<std::string>()},
                                           {"identity:", NumberText(fields["identity"])},
                                           {"run mode:", NumberText(fields["runMode"])}});
}

// --- layout ---

void ReadLayout(ByteReader& reader, Fields& fields)
{
    fields["rows"] = reader.U32();
    fields["columns"] = reader.U32();
    Fields& screens = fields["screens"] = Fields::array();
    for (uint32_t left = reader.U32(); left > 0 && !reader.Failed(); --left) {
        Fields screen;
        screen["id"] = reader.U32();
        screen["name"] = reader.Text(kScreenName);
        screen["x"] = reader.U32();
        screen["y"] = reader.U32();
        screens.push_back(std::move(screen));
    }
}

// A grid up to this size is drawn whole; anything beyond is listed.
constexpr uint32_t kMaxDrawn = 64;

std::string Counted(uint32_t count, const char* what)
{
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

// The plug-in answers for an empty wall with one screen that is none.
bool NothingIsBound(const Fields& screens)
{
    static const Fields kNone{{"id", 0}, {"name", ""}, {"x", 0}, {"y", 0}};
    return screens.empty() || (screens.size() == 1 && screens.front() == kNone);
}

std::string ShowLayout(const Fields& fields)
{
    const auto rows = fields["rows"].get<uint32_t>();
    const auto columns = fields["columns"].get<uint32_t>();
    Rows grid(std::min(rows, kMaxDrawn), std::vector<std::string>(std::min(columns, kMaxDrawn)));
    Rows outside;
    const bool empty = NothingIsBound(fields["screens"]);
    for (const Fields& screen : empty ? Fields::array() : fields["screens"]) {
        const auto x = screen["x"].get<uint32_t>();
        const auto y = screen["y"].get<uint32_t>();
        const auto name = screen["name"].get<std::string>();
        const std::string screenName = NumberText(screen["id"]) + (name.empty() ? "" : ' ' + name);
        if (y < grid.size() && x < grid[y].size()) {
            std::string& cell = grid[y][x];
            cell += (cell.empty() ? "" : ", ") + screenName;
        } else {
            outside.push_back({"at " + std::to_string(x) + ' ' + std::to_string(y) + ':', screenName});
        }
    }
    for (std::size_t y = 0; y < grid.size(); ++y) {
        std::replace(grid[y].begin(), grid[y].end(), std::string(), std::string("-"));
        grid[y].insert(grid[y].begin(), "row " + std::to_string(y) + ':');
    }
    return Counted(rows, "row") + ", " + Counted(columns, "column") + (empty ? ", nothing bound" : "") +
           TextTable(grid) + TextTable(outside);
}

// --- display switches ---

// The only answer that is text.
void ReadWindowConfig(ByteReader& reader, Fields& fields)
{
    ReadHead(reader, fields);
    const std::string xml = reader.Rest();
    tinyxml2::XMLDocument document;
    document.Parse(xml.data(), xml.size());
    const tinyxml2::XMLElement* root = document.FirstChildElement("response");
    const tinyxml2::XMLElement* info = root == nullptr ? nullptr : root->FirstChildElement("baseInfo");
    if (info == nullptr) {
        reader.Fail();
        return;
    }
    const auto* idWord = root->FirstChildElement("id");
    fields["node"] = idWord == nullptr || idWord->GetText() == nullptr ? "" : idWord->GetText();
    for (const auto& [field, element] :
         {std::pair("borders", "enableborder"), std::pair("windowIds", "enableshowwinid")}) {
        const auto* found = info->FirstChildElement(element);
        unsigned int value = 0;
        if (found == nullptr || found->QueryUnsignedText(&value) != tinyxml2::XML_SUCCESS) {
            reader.Fail();
        }
        fields[field] = value != 0;
    }
}

std::string ShowWindowConfig(const Fields& fields)
{
    return "borders " + OnOff(fields["borders"]) + ", window ids " + OnOff(fields["windowIds"]);
}

// --- lists ---

void ReadAudio(ByteReader& reader, Fields& fields)
{
    ReadHead(reader, fields);
    fields["wall"] = GuidText(reader.Guid());
    fields["decoder"] = GuidText(reader.Guid());
    Fields& windows = fields["windows"] = Fields::array();
    for (uint32_t left = reader.U32(); left > 0 && !reader.Failed(); --left) {
        Fields window;
        window["id"] = reader.I32();
        Fields& subWindows = window["subWindows"] = Fields::array();
        for (uint32_t subs = reader.U32(); subs > 0 && !reader.Failed(); --subs) {
            const int32_t index = reader.I32();
            subWindows.push_back({{"index", index}, {"channel", reader.I32()}});
        }
        windows.push_back(std::move(window));
    }
}

std::string ShowAudio(const Fields& fields)
{
    Rows rows{{"WINDOW", "INDEX", "CHANNEL"}};
    for (const Fields& window : fields["windows"]) {
        if (window["subWindows"].empty()) {
            rows.push_back({NumberText(window["id"]), "-", "-"});
        }
        for (const Fields& sub : window["subWindows"]) {
            rows.push_back({NumberText(window["id"]), NumberText(sub["index"]), NumberText(sub["channel"])});
        }
    }
    return rows.size() == 1 ? "no window carries sound" : "windows with sound" + TextTable(rows);
}

constexpr std::size_t kGroupName = 256;
constexpr std::size_t kGroupChannels = 16;

void ReadGroups(ByteReader& reader, Fields& fields)
{
    ReadHead(reader, fields);
    Fields& groups = fields["groups"] = Fields::array();
    for (uint32_t left = reader.U32(); left > 0 && !reader.Failed(); --left) {
        reader.Guid(); // the wall's GUID, unknown to the decoder
        Fields group;
        group["id"] = reader.I32();
        reader.U32(); // the number of channels, which the decoder does not report
        group["interval"] = reader.U32();
        group["name"] = reader.Text(kGroupName);
        group["channels"] = reader.Text(kGroupChannels);
        groups.push_back(std::move(group));
    }
}

std::string ShowGroups(const Fields& fields)
{
    Rows rows{{"ID", "INTERVAL", "CHANNELS", "NAME"}};
    for (const Fields& group : fields["groups"]) {
        rows.push_back({NumberText(group["id"]), NumberText(group["interval"]),
                        group["channels"].get<std::string>(), group["name"].get<std::string>()});
    }
    return rows.size() == 1 ? "no channel groups" : "channel groups" + TextTable(rows);
}

} // namespace

const AnswerForm kDoneForm{ReadHead, ShowDone};
const AnswerForm kEmptyForm{ReadNothing, ShowDone};
const AnswerForm kLoginForm{ReadLogin, ShowLogin};
const AnswerForm kSystemInfoForm{ReadSystemInfo, ShowSystemInfo};
const AnswerForm kBasicConfigForm{ReadBasicConfig, ShowBasicConfig};
const AnswerForm kLayoutForm{ReadLayout, ShowLayout};
const AnswerForm kWindowConfigForm{ReadWindowConfig, ShowWindowConfig};
const AnswerForm kAudioForm{ReadAudio, ShowAudio};
const AnswerForm kGroupsForm{ReadGroups, ShowGroups};

} // namespace standin_host
