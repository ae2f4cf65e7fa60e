#include "Commands/Records/NotificationFields.h"

#include <nlohmann/json.hpp>
#include <tinyxml2.h>

namespace standin_host {

namespace {

using OrderedJson = nlohmann::ordered_json;
using tinyxml2::XMLElement;

const XMLElement* Child(const XMLElement* parent, const char* name)
{
    return parent == nullptr ? nullptr : parent->FirstChildElement(name);
}

std::string ChildText(const XMLElement& parent, const char* name)
{
    const XMLElement* child = parent.FirstChildElement(name);
    return child == nullptr || child->GetText() == nullptr ? "" : child->GetText();
}

OrderedJson Channel(const XMLElement& item)
{
    OrderedJson channel = OrderedJson::object();
    int64_t id = 0;
    if (const XMLElement* element = item.FirstChildElement("id");
        element != nullptr && element->QueryInt64Text(&id) == tinyxml2::XML_SUCCESS) {
        channel["id"] = id;
    }
    if (item.FirstChildElement("name") != nullptr) {
        channel["name"] = ChildText(item, "name");
    }
    const std::string state = ChildText(item, "state");
    if (state == "online" || state == "offline") {
        channel["online"] = state == "online";
    } else if (!state.empty()) {
        channel["state"] = state;
    }
    return channel;
}

} // namespace

OrderedJson NotificationFields(const std::string& xml)
{
    OrderedJson fields = OrderedJson::object();
    tinyxml2::XMLDocument document;
    if (xml.size() > kMostNoticeRead || document.Parse(xml.data(), xml.size()) != tinyxml2::XML_SUCCESS) {
        return fields;
    }
    const XMLElement* body = Child(document.FirstChildElement("td_command"), "td_body");
    const XMLElement* list = Child(body, "td_channellist");
    list = list == nullptr ? Child(body, "td_channelstatelist") : list;
    if (list == nullptr) {
        return fields;
    }
    OrderedJson& channels = fields["channels"] = OrderedJson::array();
    for (const XMLElement* item = Child(list, "item"); item != nullptr;
         item = item->NextSiblingElement("item")) {
        channels.push_back(Channel(*item));
    }
    return fields;
}

std::string ChannelsText(const nlohmann::ordered_json& fields)
{
    std::string text;
    for (const OrderedJson& channel : fields["channels"]) {
        text += text.empty() ? "" : ",";
        text += channel.contains("id") ? ' ' + channel["id"].dump() : "";
        for (const char* field : {"name", "state"}) {
            text += channel.contains(field) ? ' ' + channel[field].get<std::string>() : "";
        }
        text += !channel.contains("online") ? "" : channel["online"].get<bool>() ? " online" : " offline";
    }
    return text.empty() ? "none" : text.substr(1);
}

} // namespace standin_host
