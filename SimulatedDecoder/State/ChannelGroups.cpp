#include "State/ChannelGroups.h"

#include <utility>

namespace simulated_decoder {

ErrorCode ChannelGroups::Add(ChannelGroup group)
{
    if (Has(group.id)) {
        return ErrorCode::GroupExists;
    }
    if (m_groups.size() >= kMaxGroups) {
        return ErrorCode::TooManyGroups;
    }
    const std::int32_t id = group.id;
    m_groups.emplace(id, std::move(group));
    ++m_revision;
    return ErrorCode::Success;
}

ErrorCode ChannelGroups::Set(ChannelGroup group)
{
    const auto found = m_groups.find(group.id);
    if (found == m_groups.end()) {
        return ErrorCode::UnknownGroup;
    }
    found->second = std::move(group);
    ++m_revision;
    return ErrorCode::Success;
}

ErrorCode ChannelGroups::Delete(const std::vector<std::int32_t>& ids)
{
    auto groups = m_groups;
    for (const std::int32_t id : ids) {
        if (groups.erase(id) == 0) {
            return ErrorCode::UnknownGroup;
        }
    }
    m_groups.swap(groups);
    ++m_revision;
    return ErrorCode::Success;
}

} // namespace simulated_decoder
