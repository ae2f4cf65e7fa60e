#include "Commands/Records/AnswerForms.h"

#include <algorithm>

#include <nlohmann/json.hpp>
#include <tinyxml2.h>

#include "Base/GuidText.h"
#include "Commands/Records/TextTable.h"

namespace standin_host {

namespace {

using Rows = std::vector<std::vector<std::string>>;

std::string NumberText(const Fields& value) { return value.dump(); }

std::string OnOff(const Fields& value) { return value.get<bool>() ? "on" : "off"; }

void ReadNothing(CByteReader&, Fields&) {}

std::string ShowDone(const Fields&) { return "done"; }

// The result record that begins the answer to an option command.
void ReadHead(CByteReader& reader, Fields& fields)
{
    fields["optType"] = reader.U32();
    reader.U16(); // its length
    reader.U16(); // and that of what follows, which the answer's own length tells better
    fields["result"] = reader.U32();
    fields["errorCode"] = reader.U32();
}

// --- login ---

void ReadLogin(CByteReader& reader, Fields& fields)
{
    fields["nodeId"] = GuidText(reader.Guid());
    fields["nodeType"] = reader.U32();
    reader.Text(112); // nothing that the plug-in fills
}

std::string ShowLogin(const Fields& fields)
{
    return "logged in, answered by node " + fields["nodeId"].get<std::string>() + ", type " +
           NumberText(fields["nodeType"]);
}

// --- the decoder itself ---

constexpr const char* s_infoTexts[] = {"softwareVersion", "buildDate", "kernelVersion", "dataVersion"};
constexpr std::size_t kInfoText = 64;

void ReadSystemInfo(CByteReader& reader, Fields& fields)
{
    ReadHead(reader, fields);
    fields["decoder"] = GuidText(reader.Guid());
    fields["name"] = reader.Text(kInfoText);
    fields["model"] = reader.I32();
    fields["deviceType"] = reader.Text(kInfoText);
    fields["mac"] = reader.Text(kInfoText);
    for (const char* szField : s_infoTexts) {
        fields[szField] = reader.Text(kInfoText);
    }
}

std::string ShowSystemInfo(const Fields& fields)
{
    const auto text = [&](const char* szField) { return fields[szField].get<std::string>(); };
    return "the decoder says" + TextTable({{"name:", text("name")},
                                           {"model:", NumberText(fields["model"])},
                                           {"device type:", text("deviceType")},
                                           {"MAC address:", text("mac")},
                                           {"software version:", text("softwareVersion")},
                                           {"build date:", text("buildDate")},
                                           {"kernel version:", text("kernelVersion")},
                                           {"data version:", text("dataVersion")}});
}

void ReadBasicConfig(CByteReader& reader, Fields& fields)
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

constexpr std::size_t kScreenName = 256;

void ReadLayout(CByteReader& reader, Fields& fields)
{
    fields["rows"] = reader.U32();
    fields["columns"] = reader.U32();
    Fields& screens = fields["screens"] = Fields::array();
    for (uint32_t nLeft = reader.U32(); nLeft > 0 && !reader.Failed(); --nLeft) {
        Fields screen;
        screen["id"] = reader.U32();
        screen["name"] = reader.Text(kScreenName);
        screen["x"] = reader.U32();
        screen["y"] = reader.U32();
        screens.push_back(std::move(screen));
    }
}

// A grid of this size is drawn whole; what a decoder says beyond is listed.
constexpr uint32_t kMaxDrawn = 64;

std::string ShowLayout(const Fields& fields)
{
    const auto nRows = fields["rows"].get<uint32_t>();
    const auto nColumns = fields["columns"].get<uint32_t>();
    Rows grid(std::min(nRows, kMaxDrawn), std::vector<std::string>(std::min(nColumns, kMaxDrawn)));
    Rows outside;
    for (const Fields& screen : fields["screens"]) {
        const auto nX = screen["x"].get<uint32_t>();
        const auto nY = screen["y"].get<uint32_t>();
        const auto strName = screen["name"].get<std::string>();
        const std::string strScreen = NumberText(screen["id"]) + (strName.empty() ? "" : ' ' + strName);
        if (nY < grid.size() && nX < grid[nY].size()) {
            std::string& strCell = grid[nY][nX];
            strCell += (strCell.empty() ? "" : ", ") + strScreen;
        } else {
            outside.push_back({"at " + std::to_string(nX) + ' ' + std::to_string(nY) + ':', strScreen});
        }
    }
    for (std::size_t nY = 0; nY < grid.size(); ++nY) {
        std::replace(grid[nY].begin(), grid[nY].end(), std::string(), std::string("-"));
        grid[nY].insert(grid[nY].begin(), "row " + std::to_string(nY) + ':');
    }
    return std::to_string(nRows) + " rows, " + std::to_string(nColumns) + " columns" + TextTable(grid) +
           TextTable(outside);
}

// --- display switches ---

// The one answer that is a text.
void ReadWindowConfig(CByteReader& reader, Fields& fields)
{
    ReadHead(reader, fields);
    const std::string strXml = reader.Rest();
    tinyxml2::XMLDocument document;
    document.Parse(strXml.data(), strXml.size());
    const tinyxml2::XMLElement* pRoot = document.FirstChildElement("response");
    const tinyxml2::XMLElement* pInfo = pRoot == nullptr ? nullptr : pRoot->FirstChildElement("baseInfo");
    if (pInfo == nullptr) {
        reader.Fail();
        return;
    }
    const auto* pId = pRoot->FirstChildElement("id");
    fields["node"] = pId == nullptr || pId->GetText() == nullptr ? "" : pId->GetText();
    for (const auto& [szField, szElement] :
         {std::pair("borders", "enableborder"), std::pair("windowIds", "enableshowwinid")}) {
        const auto* pSwitch = pInfo->FirstChildElement(szElement);
        unsigned int nValue = 0;
        if (pSwitch == nullptr || pSwitch->QueryUnsignedText(&nValue) != tinyxml2::XML_SUCCESS) {
            reader.Fail();
        }
        fields[szField] = nValue != 0;
    }
}

std::string ShowWindowConfig(const Fields& fields)
{
    return "borders " + OnOff(fields["borders"]) + ", window ids " + OnOff(fields["windowIds"]);
}

// --- lists ---

void ReadAudio(CByteReader& reader, Fields& fields)
{
    ReadHead(reader, fields);
    fields["wall"] = GuidText(reader.Guid());
    fields["decoder"] = GuidText(reader.Guid());
    Fields& windows = fields["windows"] = Fields::array();
    for (uint32_t nLeft = reader.U32(); nLeft > 0 && !reader.Failed(); --nLeft) {
        Fields window;
        window["id"] = reader.I32();
        Fields& subWindows = window["subWindows"] = Fields::array();
        for (uint32_t nSubs = reader.U32(); nSubs > 0 && !reader.Failed(); --nSubs) {
            const int32_t nIndex = reader.I32();
            subWindows.push_back({{"index", nIndex}, {"channel", reader.I32()}});
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

void ReadGroups(CByteReader& reader, Fields& fields)
{
    ReadHead(reader, fields);
    Fields& groups = fields["groups"] = Fields::array();
    for (uint32_t nLeft = reader.U32(); nLeft > 0 && !reader.Failed(); --nLeft) {
        reader.Guid(); // the wall, which the decoder does not know
        Fields group;
        group["id"] = reader.I32();
        reader.U32(); // the number of channels, which the decoder does not say
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

const SAnswerForm kDoneForm{ReadHead, ShowDone};
const SAnswerForm kEmptyForm{ReadNothing, ShowDone};
const SAnswerForm kLoginForm{ReadLogin, ShowLogin};
const SAnswerForm kSystemInfoForm{ReadSystemInfo, ShowSystemInfo};
const SAnswerForm kBasicConfigForm{ReadBasicConfig, ShowBasicConfig};
const SAnswerForm kLayoutForm{ReadLayout, ShowLayout};
const SAnswerForm kWindowConfigForm{ReadWindowConfig, ShowWindowConfig};
const SAnswerForm kAudioForm{ReadAudio, ShowAudio};
const SAnswerForm kGroupsForm{ReadGroups, ShowGroups};

} // namespace standin_host
