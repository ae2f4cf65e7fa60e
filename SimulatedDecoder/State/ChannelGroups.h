#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "Link/ErrorCode.h"

namespace simulated_decoder {

inline constexpr std::size_t kMaxGroups = 256;
inline constexpr std::size_t kMaxGroupChannels = 64;

// Input channels through which a sub-window cycles.
struct ChannelGroup {
    std::int32_t id = 0; // from 1; to hosts 0 means all groups
    std::string name;    // without control characters, in the host's character set
    std::uint32_t interval = 0;
    std::vector<std::int32_t> channels;
};

// Each operation is carried out whole or not at all.
class ChannelGroups {
public:
    const std::map<std::int32_t, ChannelGroup>& All() const { return m_groups; }
    bool Has(std::int32_t id) const { return m_groups.contains(id); }
    // Increases with every change.
    std::uint64_t Revision() const { return m_revision; }

    ErrorCode Add(ChannelGroup group);
    ErrorCode Set(ChannelGroup group);
    ErrorCode Delete(const std::vector<std::int32_t>& ids);

private:
    std::map<std::int32_t, ChannelGroup> m_groups;
    std::uint64_t m_revision = 0;
};

} // namespace simulated_decoder
