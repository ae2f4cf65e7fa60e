#include "Requests/RequestReading.h"

#include <algorithm>
#include <string>

namespace simulated_decoder {

namespace {

using tinyxml2::XMLElement;

constexpr std::size_t kMaxName = 255;

// A list such as "1,2,3"; nothing when it is not one.
std::optional<std::vector<std::int32_t>> ReadChannels(std::string_view text)
{
    std::vector<std::int32_t> channels;
    for (bool more = true; more;) {
        const auto comma = text.find(',');
        const auto channel = tools::ParseDecimal<std::int32_t>(text.substr(0, comma));
        if (!channel || channels.size() >= kMaxGroupChannels) {
            return std::nullopt;
        }
        channels.push_back(*channel);
        more = comma != std::string_view::npos;
        text.remove_prefix(more ? comma + 1 : 0);
    }
    return channels;
}

std::string WriteChannels(const std::vector<std::int32_t>& channels)
{
    std::string text;
    for (const std::int32_t channel : channels) {
        text += (text.empty() ? "" : ",") + std::to_string(channel);
    }
    return text;
}

std::optional<ChannelGroup> ReadGroup(const XMLElement* element)
{
    const auto id = ChildNumber<std::int32_t>(element, "id");
    const std::string_view name = ChildText(element, "name");
    const auto count = ChildNumber<std::uint32_t>(element, "channelnum");
    const auto interval = ChildNumber<std::uint32_t>(element, "interval");
    auto channels = ReadChannels(ChildText(element, "td_channellist"));
    const bool good = id > 0 && interval > 0U && channels && count == channels->size() &&
                      name.size() <= kMaxName && !HasControls(name);
    if (!good) {
        return std::nullopt;
    }
    return ChannelGroup{*id, std::string(name), *interval, std::move(*channels)};
}

ErrorCode Keep(RequestContext& context, ErrorCode (ChannelGroups::*keep)(ChannelGroup))
{
    auto group = ReadGroup(Child(context.request.Body(), "channelgroup"));
    if (!group) {
        return ErrorCode::BadValue;
    }
    const InputChannels& inputs = context.state.channels;
    if (!std::all_of(group->channels.begin(), group->channels.end(),
                     [&](std::int32_t channel) { return inputs.Has(channel); })) {
        return ErrorCode::UnknownChannel;
    }
    return (context.state.groups.*keep)(std::move(*group));
}

void AddGroup(XMLElement& list, const ChannelGroup& group)
{
    XMLElement& item = AddChild(list, "item");
    AddChild(item, "id", group.id);
    AddChild(item, "name", group.name);
    AddChild(item, "interval", group.interval);
    AddChild(item, "td_channellist", WriteChannels(group.channels));
}

std::optional<std::int32_t> ReadGroupId(const XMLElement& item)
{
    return ChildNumber<std::int32_t>(&item, "id");
}

} // namespace

ErrorCode DoAddGroup(RequestContext& context) { return Keep(context, &ChannelGroups::Add); }

ErrorCode DoSetOrGetGroup(RequestContext& context)
{
    // A host that asks for one group sends only its id; one that asks for all sends nothing.
    const XMLElement* group = Child(context.request.Body(), "channelgroup");
    const XMLElement* id = Child(group, "id");
    const bool asks = group == nullptr || (id != nullptr && group->FirstChildElement() == id &&
                                           id->NextSiblingElement() == nullptr);
    return asks ? DoGetGroup(context) : Keep(context, &ChannelGroups::Set);
}

ErrorCode DoGetGroup(RequestContext& context)
{
    const auto& groups = context.state.groups.All();
    XMLElement& list = AddChild(context.reply.Body(), "channelgrouplist");
    const XMLElement* asked = Child(context.request.Body(), "channelgroup");
    if (asked == nullptr) {
        for (const auto& [id, group] : groups) {
            AddGroup(list, group);
        }
        return ErrorCode::Success;
    }
    const auto id = ReadGroupId(*asked);
    if (!id) {
        return ErrorCode::BadValue;
    }
    const auto found = groups.find(*id);
    if (found == groups.end()) {
        return ErrorCode::UnknownGroup;
    }
    AddGroup(list, found->second);
    return ErrorCode::Success;
}

ErrorCode DoDeleteGroup(RequestContext& context)
{
    return ChangeByList(context, "channelgrouplist", ReadGroupId, [&](const auto& ids) {
        const bool inUse = std::any_of(ids.begin(), ids.end(),
                                       [&](std::int32_t id) { return context.state.wall.IsPolled(id); });
        return inUse ? ErrorCode::GroupInUse : context.state.groups.Delete(ids);
    });
}

ErrorCode DoStartPolling(RequestContext& context)
{
    return ChangeSubWindows(context, [&](const XMLElement& item, SubWindowChange& change) {
        const auto group = ChildNumber<std::int32_t>(&item, "channelgroup");
        if (!group) {
            return ErrorCode::BadValue;
        }
        change = [group](SubWindow& subWindow) {
            subWindow.StopShowing();
            subWindow.polledGroup = group;
            return ErrorCode::Success;
        };
        return context.state.groups.Has(*group) ? ErrorCode::Success : ErrorCode::UnknownGroup;
    });
}

} // namespace simulated_decoder
